// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/CaseFolding.h"

#include <cwchar>
#include <locale>
#include <optional>

namespace tessaloom {
namespace {

using Converter = std::codecvt<wchar_t, char, std::mbstate_t>;

const std::locale& unicode() {
    static const std::locale locale("C.UTF-8");
    return locale;
}

std::optional<std::wstring> wide(std::string_view text) {
    std::wstring result(text.size(), L'\0');
    std::mbstate_t state{};
    const char* read = nullptr;
    wchar_t* written = nullptr;
    const auto outcome =
        std::use_facet<Converter>(unicode()).in(state, text.data(), text.data() + text.size(), read,
                                                result.data(), result.data() + result.size(), written);
    if (outcome != Converter::ok || std::mbsinit(&state) == 0) return std::nullopt;
    result.resize(static_cast<std::size_t>(written - result.data()));
    return result;
}

std::string narrow(const std::wstring& text) {
    constexpr std::size_t longestLetter = 4;
    std::string result(text.size() * longestLetter, '\0');
    std::mbstate_t state{};
    const wchar_t* read = nullptr;
    char* written = nullptr;
    std::use_facet<Converter>(unicode()).out(state, text.data(), text.data() + text.size(), read,
                                             result.data(), result.data() + result.size(), written);
    result.resize(static_cast<std::size_t>(written - result.data()));
    return result;
}

}  // namespace

std::string caseFolded(std::string_view text) {
    const auto decoded = wide(text);
    if (!decoded) return std::string(text);
    std::wstring letters = *decoded;
    // By way of the capitals, so that letters with two small forms (σ and ς) meet.
    const auto& cases = std::use_facet<std::ctype<wchar_t>>(unicode());
    cases.toupper(letters.data(), letters.data() + letters.size());
    cases.tolower(letters.data(), letters.data() + letters.size());
    return narrow(letters);
}

}  // namespace tessaloom
