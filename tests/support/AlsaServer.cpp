// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/AlsaServer.h"

#include <chrono>
#include <fstream>
#include <utility>

namespace tessaloom::test {
namespace {

using namespace std::chrono_literals;

constexpr auto microphone = R"(context.objects = [
  { factory = adapter args = { factory.name = api.alsa.pcm.source node.name = alsa
      node.description = "ALSA microphone" media.class = Audio/Source priority.session = 50000
      api.alsa.path = testmic } }
]
)";

}  // namespace

AlsaServer::AlsaServer(const Environment& base) : server_(with(configuration_, base)) {
    connect();
    const std::filesystem::path folder = server_.environment().at("XDG_CONFIG_HOME");
    std::ofstream(folder / "pipewire" / "pipewire.conf.d" / "microphone.conf") << microphone;
    server_.stop();
    server_.start();
}

Environment AlsaServer::with(const std::filesystem::path& configuration, Environment environment) {
    environment["ALSA_CONFIG_PATH"] = configuration.string();
    return environment;
}

void AlsaServer::write(const char* device) {
    std::ofstream(configuration_) << "</usr/share/alsa/alsa.conf>\npcm.testmic { " << device << " }\n";
    // ALSA reads it again when it was changed in another second.
    const auto now = std::filesystem::file_time_type::clock::now();
    std::filesystem::last_write_time(configuration_, now + ++changes_ * 2s);
}

}  // namespace tessaloom::test
