#include "propui/refresh.h"

#include "propui/slider_controller.h"

namespace ZELPropUI {

void ElementRefresh::TurnTo(ISliderController* controller) {
    if (controller == controller_) return;
    if (controller_ != nullptr) controller_->EndRefresh();
    controller_ = controller;
    if (controller_ != nullptr) controller_->BeginRefresh();
}

void RefreshTurn::Take(std::size_t controls) noexcept {
    ++next_;
    --left_;
    if (left_ != 0 && next_ < controls) return;
    next_ = 0;
    waited_ = {};
}

void RefreshTurn::GoOn(Time now) noexcept {
    if (waiting_since_) waited_ += now - *waiting_since_;
    waiting_since_.reset();
}

}  // namespace ZELPropUI
