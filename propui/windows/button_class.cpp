#include "propui/windows/button_class.h"

#include "propui/windows/framework/superclassed_window.h"

namespace ZELPropUI {
namespace {

Framework::Superclass window_class(L"Selvane_BUTTON", L"BUTTON", Framework::SuperclassedWindow::Procedure);

}  // namespace

Framework::Superclass& ButtonClass() noexcept { return window_class; }

}  // namespace ZELPropUI
