// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/GpuPipeline.h"

#include <QFile>
#include <utility>
#include <vector>

namespace tessaloom {
namespace {

QShader readShader(const QString& folder, const QString& name) {
    QFile file(folder + '/' + name + ".qsb");
    const QShader shader =
        file.open(QIODevice::ReadOnly) ? QShader::fromSerialized(file.readAll()) : QShader();
    if (!shader.isValid()) throw GpuPipeline::Failure("can't read the shader " + name.toStdString());
    return shader;
}

QRhiGraphicsPipeline::TargetBlend targetBlend(GpuBlend blend) {
    QRhiGraphicsPipeline::TargetBlend target;
    target.enable = blend != GpuBlend::none;
    const auto source =
        blend == GpuBlend::straightAlpha ? QRhiGraphicsPipeline::SrcAlpha : QRhiGraphicsPipeline::One;
    target.srcColor = target.srcAlpha = source;
    target.dstColor = target.dstAlpha = QRhiGraphicsPipeline::OneMinusSrcAlpha;
    return target;
}

}  // namespace

GpuPipeline GpuPipeline::build(GpuDevice& device, const GpuInputs& inputs, QRhiRenderPassDescriptor& pass,
                               const QString& shaderFolder, const Setup& setup) {
    const QString vertex = setup.vertex + ".vert";
    const QString fragment = setup.fragment + ".frag";
    auto layout = inputs.bind(std::vector(static_cast<std::size_t>(setup.textures), setup.texture));
    std::unique_ptr<QRhiGraphicsPipeline> pipeline(device.rhi().newGraphicsPipeline());
    pipeline->setShaderStages({{QRhiShaderStage::Vertex, readShader(shaderFolder, vertex)},
                               {QRhiShaderStage::Fragment, readShader(shaderFolder, fragment)}});
    pipeline->setVertexInputLayout({});
    pipeline->setTopology(setup.quad ? QRhiGraphicsPipeline::TriangleStrip : QRhiGraphicsPipeline::Triangles);
    pipeline->setTargetBlends({targetBlend(setup.blend)});
    pipeline->setShaderResourceBindings(layout.get());
    pipeline->setRenderPassDescriptor(&pass);
    if (!pipeline->create()) {
        throw Failure("the driver refuses " + vertex.toStdString() + " with " + fragment.toStdString());
    }
    return {std::move(layout), std::move(pipeline), setup.quad ? 4U : 3U};
}

GpuPipeline::GpuPipeline(GpuInputs::Bindings layout, std::unique_ptr<QRhiGraphicsPipeline> pipeline,
                         quint32 vertices)
    : layout_(std::move(layout)), pipeline_(std::move(pipeline)), vertices_(vertices) {}

void GpuPipeline::draw(QRhiCommandBuffer& commands, QSize canvas, QRhiShaderResourceBindings& bindings,
                       quint32 record) const {
    const QRhiCommandBuffer::DynamicOffset offset(0, record);
    commands.setGraphicsPipeline(pipeline_.get());
    commands.setViewport({0, 0, static_cast<float>(canvas.width()), static_cast<float>(canvas.height())});
    commands.setShaderResources(&bindings, 1, &offset);
    commands.draw(vertices_);
}

}  // namespace tessaloom
