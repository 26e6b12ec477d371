// SPDX-License-Identifier: GPL-3.0-or-later
#include "render/CaptionPlacement.h"

#include <algorithm>

namespace tessaloom {
namespace {

enum class Move { none, above, below };

// The caption on its way to its place: 32-bit floats for what is drawn, doubles for the room around the
// rectangle it must avoid.
class Placing {
  public:
    Placing(const CaptionChip& chip, Size raster, float canvasWidth, float canvasHeight)
        : canvasWidth_(canvasWidth),
          canvasHeight_(canvasHeight),
          maxWidth_(0.9F * canvasWidth),
          centreX_(canvasWidth * 0.5F),
          verticalPosition_(std::clamp(chip.verticalPosition, 0.0F, 1.0F)),
          scale_(canvasHeight * 0.056F * chip.fontScale / 90.0F),
          width_(scale_ * static_cast<float>(raster.width)),
          height_(scale_ * static_cast<float>(raster.height)) {
        fitWidth();
        restVertically();
    }

    void avoid(const Rect& keepOut) {
        const double gap = 0.02 * canvasHeight_;
        if (keepOut.minY() >= bottom() + gap || y_ - gap >= keepOut.maxY()) return;
        if (!moveSideways(keepOut, gap)) moveVertically(keepOut.minY() - gap, keepOut.maxY() + gap);
    }

    CaptionPlacement result() const {
        const float y = std::max(0.0F, std::min(y_, canvasHeight_ - height_));
        return {{centreX_ - 0.5F * width_, y, width_, height_}, scale_};
    }

  private:
    double bottom() const { return static_cast<double>(y_) + height_; }

    void fitWidth() {
        if (!(width_ > maxWidth_)) return;
        const float factor = maxWidth_ / width_;
        scale_ *= factor;
        height_ *= factor;
        width_ = maxWidth_;
    }

    void restVertically() {
        const float top = 0.08F * canvasHeight_;
        const float bottomMargin = 0.13F * canvasHeight_;
        y_ = top + verticalPosition_ * (canvasHeight_ - height_ - bottomMargin - top);
    }

    bool moveSideways(const Rect& keepOut, double gap) {
        const double side = (static_cast<double>(canvasWidth_) - maxWidth_) * 0.5;
        const bool isOnTheRight = canvasWidth_ / 2 <= keepOut.midX();
        const double low = isOnTheRight ? side : keepOut.maxX() + gap;
        const double high = isOnTheRight ? keepOut.minX() - gap : canvasWidth_ - side;
        if (canvasWidth_ < 1.2 * canvasHeight_ || high - low < 0.4 * canvasWidth_) return false;
        centreX_ = static_cast<float>((low + high) * 0.5);
        maxWidth_ = std::min(maxWidth_, static_cast<float>(high - low));
        fitWidth();
        restVertically();
        return true;
    }

    Move chooseMove(double up, double down) const {
        const bool fitsAbove = up - height_ >= 0;
        const bool fitsBelow = down + height_ <= canvasHeight_;
        if (fitsAbove && fitsBelow) return bottom() - up > down - y_ ? Move::below : Move::above;
        if (fitsAbove) return Move::above;
        return fitsBelow ? Move::below : Move::none;
    }

    void moveVertically(double up, double down) {
        const Move move = chooseMove(up, down);
        if (move == Move::above && up < bottom()) y_ = static_cast<float>(up - height_);
        if (move == Move::below) y_ = std::max(y_, static_cast<float>(down));
    }

    float canvasWidth_;
    float canvasHeight_;
    float maxWidth_;
    float centreX_;
    float verticalPosition_;
    float scale_;
    float width_;
    float height_;
    float y_ = 0;
};

}  // namespace

CaptionPlacement captionPlacement(const CaptionChip& chip, Size rasterSize, float canvasWidth,
                                  float canvasHeight, const std::optional<Rect>& keepOut) {
    Placing placing(chip, rasterSize, canvasWidth, canvasHeight);
    if (keepOut) placing.avoid(*keepOut);
    return placing.result();
}

}  // namespace tessaloom
