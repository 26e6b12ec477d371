// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/GpuDevice.h"

#include <QtGui/private/qbasicvulkanplatforminstance_p.h>
#include <QtGui/private/qrhigles2_p.h>
#include <QtGui/private/qrhivulkan_p.h>
#include <QtGui/private/qvulkaninstance_p.h>

#include <QSurfaceFormat>
#include <algorithm>
#include <array>
#include <utility>

namespace tessaloom {
namespace {

QSurfaceFormat openGlFormat() {
    QSurfaceFormat format;
    format.setVersion(3, 3);
    format.setProfile(QSurfaceFormat::CoreProfile);
    return format;
}

/// Qt asks its window system plugin for Vulkan, and the plugin that needs no display has none; so the loader
/// is opened directly.
class DisplaylessVulkan : public QBasicPlatformVulkanInstance {
  public:
    explicit DisplaylessVulkan(QVulkanInstance* instance) : instance_(instance) {
        loadVulkanLibrary(QStringLiteral("vulkan"), 1);
    }
    void createOrAdoptInstance() override { initInstance(instance_, {}); }

  private:
    QVulkanInstance* instance_;
};

std::unique_ptr<QVulkanInstance> makeVulkanInstance() {
    auto instance = std::make_unique<QVulkanInstance>();
    instance->setApiVersion({1, 1});
    QVulkanInstancePrivate::get(instance.get())
        ->platformInst.reset(std::make_unique<DisplaylessVulkan>(instance.get()).release());
    if (!instance->create()) return nullptr;
    return instance;
}

/// Null when there is no Vulkan. One for all devices and for good: Qt keeps a pointer to that of the last
/// device made and goes on using it for those before.
QVulkanInstance* vulkanInstance() {
    static const std::unique_ptr<QVulkanInstance> instance = makeVulkanInstance();
    return instance.get();
}

bool drawsWhatWeNeed(const QRhi& rhi) {
    return rhi.isTextureFormatSupported(QRhiTexture::BGRA8) &&
           rhi.isTextureFormatSupported(QRhiTexture::RGBA8, QRhiTexture::RenderTarget) &&
           rhi.isTextureFormatSupported(QRhiTexture::RGBA16F, QRhiTexture::RenderTarget) &&
           rhi.isFeatureSupported(QRhi::ImageDataStride);
}

}  // namespace

std::unique_ptr<QOffscreenSurface> GpuDevice::makeOpenGlSurface() {
    return std::unique_ptr<QOffscreenSurface>(QRhiGles2InitParams::newFallbackSurface(openGlFormat()));
}

std::unique_ptr<GpuDevice> GpuDevice::openOpenGl(QOffscreenSurface& surface) {
    QRhiGles2InitParams parameters;
    parameters.format = openGlFormat();
    parameters.fallbackSurface = &surface;
    return usable(QRhi::create(QRhi::OpenGLES2, &parameters));
}

std::unique_ptr<GpuDevice> GpuDevice::openVulkan() {
    QRhiVulkanInitParams parameters;
    parameters.inst = vulkanInstance();
    if (parameters.inst == nullptr) return nullptr;
    return usable(QRhi::create(QRhi::Vulkan, &parameters));
}

std::unique_ptr<GpuDevice> GpuDevice::usable(QRhi* created) {
    std::unique_ptr<QRhi> rhi(created);
    if (!rhi || !drawsWhatWeNeed(*rhi)) return nullptr;
    return std::unique_ptr<GpuDevice>(new GpuDevice(std::move(rhi)));
}

GpuDevice::GpuDevice(std::unique_ptr<QRhi> rhi) : rhi_(std::move(rhi)) {}

std::string GpuDevice::name() const {
    return rhi_->driverInfo().deviceName.toStdString();
}

bool GpuDevice::isSoftware() const {
    const QRhiDriverInfo driver = rhi_->driverInfo();
    if (driver.deviceType == QRhiDriverInfo::CpuDevice) return true;
    // OpenGL tells no type.
    constexpr std::array software{"llvmpipe", "softpipe", "swrast", "software"};
    const QByteArray deviceName = driver.deviceName.toLower();
    return std::ranges::any_of(software, [&](const char* word) { return deviceName.contains(word); });
}

}  // namespace tessaloom
