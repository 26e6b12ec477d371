// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <memory>
#include <stdexcept>

#include "render/GpuInputs.h"

namespace tessaloom {

/// How draws mix with what is there.
enum class GpuBlend { none, straightAlpha, premultipliedAlpha };

/// A vertex and a fragment stage, built for one kind of target.
class GpuPipeline {
  public:
    struct Setup {
        /// Names without their endings: a folder's NAME.vert.qsb and NAME.frag.qsb.
        QString vertex;
        QString fragment;
        /// Any texture, to stand for those that the fragment stage reads.
        QRhiTexture* texture = nullptr;
        int textures = 1;
        GpuBlend blend = GpuBlend::none;
        /// A strip of four vertices, else a triangle of three.
        bool quad = false;
    };

    class Failure : public std::runtime_error {
      public:
        using std::runtime_error::runtime_error;
    };

    /// `shaderFolder` may be one of Qt's resources. Throws Failure.
    static GpuPipeline build(GpuDevice& device, const GpuInputs& inputs, QRhiRenderPassDescriptor& pass,
                             const QString& shaderFolder, const Setup& setup);

    /// Draws with the record at this place of the inputs, inside a pass of the kind it was built for.
    void draw(QRhiCommandBuffer& commands, QSize canvas, QRhiShaderResourceBindings& bindings,
              quint32 record) const;

  private:
    GpuPipeline(GpuInputs::Bindings layout, std::unique_ptr<QRhiGraphicsPipeline> pipeline, quint32 vertices);

    GpuInputs::Bindings layout_;
    std::unique_ptr<QRhiGraphicsPipeline> pipeline_;
    quint32 vertices_;
};

}  // namespace tessaloom
