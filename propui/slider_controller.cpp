#include "propui/slider_controller.h"

#include "items/vendor_properties.h"
#include "propui/number_text.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>

namespace ZELPropUI {
namespace {

using ZELAdapterHelper::AbsRangeInfo;
using ZELAdapterHelper::SharedString;
using ZELAdapterHelper::TruncateToInt32;

template <class Value>
using Getter = HRESULT (GuardedItem::*)(InterfaceKey, Value&) const noexcept;

template <class Value>
bool Read(const AnswerSpan& span, KeptAnswer<Value>& kept, const GuardedItem& item, Getter<Value> getter,
          InterfaceKey key, Value& value) {
    return kept.Get(span, value, [&](Value& answer) { return SUCCEEDED((item.*getter)(key, answer)); });
}

bool AsksTrue(const AnswerSpan& span, KeptAnswer<bool>& kept, const GuardedItem& item, Getter<bool> getter,
              InterfaceKey key) {
    bool answer = false;
    return Read(span, kept, item, getter, key, answer) && answer;
}

// What is asked while the driver writes may be from before or after the write.
template <class Value>
bool Write(AnswerSpan& span, const GuardedItem& item,
           HRESULT (GuardedItem::*setter)(InterfaceKey, Value) const noexcept, InterfaceKey key,
           Value value) {
    span.Forget();
    const HRESULT result = (item.*setter)(key, value);
    span.Forget();
    return SUCCEEDED(result);
}

// A text takes memory, of which there may be none.
template <class Work>
bool WithMemory(Work work) noexcept {
    try {
        return work();
    } catch (const std::bad_alloc&) {
        return false;
    }
}

// Limits and steps come from a driver and may be anything: the arithmetic on them wraps as the machine's
// does.
std::int32_t Wrap(std::int64_t number) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(number));
}

// How many whole steps lie between two numbers.
std::int32_t Steps(std::int32_t from, std::int32_t to, std::int32_t step) {
    return Wrap(std::int64_t{Wrap(std::int64_t{to} - from)} / step);
}

constexpr std::int32_t first_position = 0;
constexpr std::int32_t last_position = 100;
constexpr double half_steps = 200.0;
constexpr double longest_fraction = 0.25;
// What `TruncateToInt32` makes of a number that does not fit: no denominator, like 0.
constexpr std::int32_t no_integer = std::numeric_limits<std::int32_t>::min();

// Exposure times in seconds that a position near them stands for, ascending.
constexpr double snap_times[] = {0.0001,     0.00025,    0.0005, 0.001, 0.002, 0.004, 1.0 / 120.0, 1.0 / 60.0,
                                 1.0 / 30.0, 1.0 / 15.0, 0.125,  0.25,  0.5,   1.0,   2.0,         4.0};

}  // namespace

ULONG ISliderController::AddRef() { return references_.add(); }

ULONG ISliderController::Release() {
    const ULONG left = references_.give_up();
    if (left == 0) delete this;
    return left;
}

bool CElementSliderController::IsReadOnly() {
    return AsksTrue(Answers(), read_only_, item_, &GuardedItem::IsReadOnly, key_);
}

bool CElementSliderController::IsAvailable() {
    return AsksTrue(Answers(), available_, item_, &GuardedItem::IsAvailable, key_);
}

bool CRangeSliderController::EnsureRange() {
    if (!range_known_) range_known_ = SUCCEEDED(Item().GetRange(GetKey(), range_));
    return range_known_;
}

bool CRangeSliderController::GetPositionRange(std::int32_t& low, std::int32_t& high) {
    if (!EnsureRange()) return false;
    low = 0;
    if (range_.step != 0) high = Steps(range_.min, range_.max, range_.step);
    return true;
}

bool CRangeSliderController::SetPosition(std::int32_t position) {
    if (!EnsureRange()) return false;
    const std::int64_t offset = std::int64_t{range_.step} * position;
    return WriteValue(Wrap(offset + range_.min));
}

bool CRangeSliderController::GetPosition(std::int32_t& position) {
    std::int32_t value = 0;
    if (!EnsureRange() || !ReadValue(value) || range_.step < 1) return false;
    position = Steps(range_.min, value, range_.step);
    return true;
}

bool CRangeSliderController::ReadValue(std::int32_t& value) {
    return Read(Answers(), value_, Item(), &GuardedItem::GetValue, GetKey(), value);
}

bool CRangeSliderController::WriteValue(std::int32_t value) {
    return Write(Answers(), Item(), &GuardedItem::SetValue, GetKey(), value);
}

bool CRangeSliderController::SetText(std::wstring_view text) {
    return WithMemory([&] {
        std::int32_t value = 0;
        return ParseInteger(text, value) && WriteValue(value);
    });
}

bool CRangeSliderController::GetText(std::wstring& text) {
    return WithMemory([&] {
        std::int32_t value = 0;
        if (!ReadValue(value)) return false;
        text = FormatInteger(value);
        return true;
    });
}

bool CAbsValSliderController::EnsureInfo(AbsRangeInfo& range) {
    if (!range_known_) {
        range_known_ = SUCCEEDED(Item().GetAbsRange(GetKey(), range_));
        SharedString unit;
        std::int32_t scale = scale_;
        if (SUCCEEDED(Item().GetAbsUnit(GetKey(), unit, scale))) {
            unit_ = unit;
            scale_ = scale;
        }
    }
    if (range_known_) range = range_;
    return range_known_;
}

double CAbsValSliderController::ToScale(double value) const {
    return scale_ == ZELAdapterHelper::scale_logarithmic ? std::log(value) : value;
}

double CAbsValSliderController::FromScale(double scaled) const {
    return scale_ == ZELAdapterHelper::scale_logarithmic ? std::exp(scaled) : scaled;
}

bool CAbsValSliderController::GetPositionRange(std::int32_t& low, std::int32_t& high) {
    low = first_position;
    high = last_position;
    return true;
}

// The ends are the limits themselves: on the way to a logarithm and back they would lose their last bits.
double CAbsValSliderController::ValueAt(std::int32_t position, const AbsRangeInfo& range) const {
    if (position == first_position) return range.min;
    if (position == last_position) return range.max;
    const double step = (ToScale(range.max) - ToScale(range.min)) / last_position;
    return FromScale(ToScale(range.min) + step * static_cast<double>(position));
}

bool CAbsValSliderController::SetPosition(std::int32_t position) {
    AbsRangeInfo range;
    if (!EnsureInfo(range)) return false;
    double value = ValueAt(position, range);
    // The order of the arguments decides what a NaN ends as, and the order of the calls what crossed
    // limits give.
    value = std::max(range.min, std::min(range.max, value));
    return WriteValue(SnapValue(value));
}

bool CAbsValSliderController::GetPosition(std::int32_t& position) {
    double value = 0;
    AbsRangeInfo range;
    if (!ReadValue(value) || !EnsureInfo(range)) return false;
    const double low = ToScale(range.min);
    position = TruncateToInt32((ToScale(value) - low) * (last_position / (ToScale(range.max) - low)) + 0.5);
    return true;
}

bool CAbsValSliderController::ReadValue(double& value) {
    return Read(Answers(), value_, Item(), &GuardedItem::GetAbsValue, GetKey(), value);
}

bool CAbsValSliderController::WriteValue(double value) {
    return Write(Answers(), Item(), &GuardedItem::SetAbsValue, GetKey(), value);
}

bool CAbsValSliderController::SetText(std::wstring_view text) {
    return WithMemory([&] {
        double value = 0;
        return ParseValue(text, Unit(), value) && WriteValue(value);
    });
}

bool CAbsValSliderController::GetText(std::wstring& text) {
    return WithMemory([&] {
        double value = 0;
        if (!ReadValue(value)) return false;
        text = FormatValue(value, shown_decimals, Unit());
        return true;
    });
}

double CAbsValSliderController::SnapValue(double value) { return value; }

bool CAbsValExposureSliderController::GetText(std::wstring& text) {
    return WithMemory([&] {
        double value = 0;
        if (!ReadValue(value)) return false;
        const std::int32_t denominator = TruncateToInt32(1.0 / value + 0.5);
        const bool is_fraction = value <= longest_fraction && denominator != 0 && denominator != no_integer;
        text = is_fraction ? FormatFraction(denominator, Unit()) : FormatValue(value, shown_decimals, Unit());
        return true;
    });
}

double CAbsValExposureSliderController::SnapValue(double value) {
    AbsRangeInfo range;
    if (!EnsureInfo(range)) return value;
    const double tolerance = (ToScale(range.max) - ToScale(range.min)) / half_steps;
    for (const double time : snap_times) {
        if (tolerance > std::fabs(ToScale(time) - ToScale(value))) value = time;
    }
    return value;
}

}  // namespace ZELPropUI
