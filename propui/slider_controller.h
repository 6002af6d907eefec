#pragma once

#include "platform/reference_count.h"
#include "propui/guarded_item.h"
#include "propui/refresh.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace ZELPropUI {

/// Logic between an element's value and the slider, edit and up-down control that show it. Counted; starts
/// with one reference for whoever makes it. Every failure is a false result that changes nothing shown.
class ISliderController {
public:
    ISliderController() = default;
    ISliderController(const ISliderController&) = delete;
    ISliderController& operator=(const ISliderController&) = delete;
    virtual ~ISliderController() = default;
    virtual ULONG AddRef();
    virtual ULONG Release();
    [[nodiscard]] virtual bool GetPositionRange(std::int32_t& low, std::int32_t& high) = 0;
    /// Writes the value that the position stands for.
    virtual bool SetPosition(std::int32_t position) = 0;
    [[nodiscard]] virtual bool GetPosition(std::int32_t& position) = 0;
    /// False also when the item fails to tell.
    [[nodiscard]] virtual bool IsReadOnly() = 0;
    /// False also when the item fails to tell.
    [[nodiscard]] virtual bool IsAvailable() = 0;
    /// Parses and writes; false if the text is no value or the write failed.
    virtual bool SetText(std::wstring_view text) = 0;
    [[nodiscard]] virtual bool GetText(std::wstring& text) = 0;
    /// The element behind the controller, for whoever shows more of it than its position.
    [[nodiscard]] virtual CZELItemDataBase& GetItem() const noexcept = 0;
    [[nodiscard]] virtual InterfaceKey GetKey() const noexcept = 0;

    /// Until the end of the refresh the item is asked once for each thing, however many controls show it; a
    /// refresh within a refresh asks anew.
    void BeginRefresh() noexcept { answers_.Begin(); }
    void EndRefresh() noexcept { answers_.End(); }

protected:
    [[nodiscard]] AnswerSpan& Answers() noexcept { return answers_; }

private:
    platform::reference_count references_{1};
    AnswerSpan answers_;
};

/// The controller of an element of an item.
class CElementSliderController : public ISliderController {
public:
    bool IsReadOnly() override;
    bool IsAvailable() override;
    [[nodiscard]] CZELItemDataBase& GetItem() const noexcept override { return *item_.get(); }
    [[nodiscard]] InterfaceKey GetKey() const noexcept override { return key_; }

protected:
    CElementSliderController(CZELItemDataBase* item, InterfaceKey key) : item_(item), key_(key) {}
    [[nodiscard]] const GuardedItem& Item() const noexcept { return item_; }

private:
    GuardedItem item_;
    InterfaceKey key_;
    KeptAnswer<bool> available_;
    KeptAnswer<bool> read_only_;
};

/// Integer elements: one position per step.
class CRangeSliderController : public CElementSliderController {
public:
    CRangeSliderController(CZELItemDataBase* item, InterfaceKey key) : CElementSliderController(item, key) {}
    bool GetPositionRange(std::int32_t& low, std::int32_t& high) override;
    bool SetPosition(std::int32_t position) override;
    bool GetPosition(std::int32_t& position) override;
    bool SetText(std::wstring_view text) override;
    bool GetText(std::wstring& text) override;

private:
    bool EnsureRange();
    bool ReadValue(std::int32_t& value);
    bool WriteValue(std::int32_t value);

    KeptAnswer<std::int32_t> value_;
    bool range_known_ = false;
    ZELAdapterHelper::RangeInfo range_;
};

/// Elements in physical units: positions 0 to 100 on a linear or logarithmic scale.
class CAbsValSliderController : public CElementSliderController {
public:
    CAbsValSliderController(CZELItemDataBase* item, InterfaceKey key) : CElementSliderController(item, key) {}
    bool GetPositionRange(std::int32_t& low, std::int32_t& high) override;
    bool SetPosition(std::int32_t position) override;
    bool GetPosition(std::int32_t& position) override;
    bool SetText(std::wstring_view text) override;
    bool GetText(std::wstring& text) override;
    /// Last correction of a value made from a position.
    [[nodiscard]] virtual double SnapValue(double value);

protected:
    bool EnsureInfo(ZELAdapterHelper::AbsRangeInfo& range);
    [[nodiscard]] double ToScale(double value) const;
    [[nodiscard]] double FromScale(double scaled) const;
    [[nodiscard]] std::wstring_view Unit() const noexcept { return unit_.View(); }
    bool ReadValue(double& value);

private:
    [[nodiscard]] double ValueAt(std::int32_t position, const ZELAdapterHelper::AbsRangeInfo& range) const;
    bool WriteValue(double value);

    KeptAnswer<double> value_;
    std::int32_t scale_ = ZELAdapterHelper::scale_linear;
    ZELAdapterHelper::SharedString unit_;
    bool range_known_ = false;
    ZELAdapterHelper::AbsRangeInfo range_;
};

/// Exposure in seconds: short times as fractions, positions snapped to the usual times.
class CAbsValExposureSliderController : public CAbsValSliderController {
public:
    using CAbsValSliderController::CAbsValSliderController;
    bool GetText(std::wstring& text) override;
    double SnapValue(double value) override;
};

}  // namespace ZELPropUI
