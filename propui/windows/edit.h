#pragma once

#include "propui/windows/controller_control.h"

namespace ZELPropUI {

/// A rich edit with the text of a value. Leaving it commits what was typed.
class CZELEdit : public CControllerControl {
public:
    explicit CZELEdit(ISliderController* controller) : CControllerControl(controller) {}
    bool Create(HWND parent, const RECT& rect, HWND extra) override;
    void Init() override;
    void Update() override;
    void UpdateValue() override;

protected:
    bool OnMessage(UINT message, WPARAM wparam, LPARAM lparam, LRESULT& result) override;

private:
    void TakePlainNumbersOnly() const;
    void ShowBackground(int system_color) const;
    void OnKillFocus();
    bool OnChar(WPARAM character);
    void Commit();

    bool commits_ = true;
};

}  // namespace ZELPropUI
