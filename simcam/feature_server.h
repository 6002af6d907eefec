#pragma once

#include "genicam/genicam_doc.h"
#include "platform/hresult.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace simcam {

/// What the 8 bytes of a path mean; `text` has any size.
enum class value_form { integer, real, text };

/// Writes the default of a number or switch that states one, past access mode and range, unless it can only
/// be read.
void write_default(GenICam::INode& node);

/// Answers the paths of named feature access from documents of its own. Every value is read past the register
/// caches: the registers may have changed by the other access path. What a feature refuses comes back as the
/// engine's HRESULT; an unknown feature or suffix, or one that its kind does not have, as 0x80070490.
class feature_server {
public:
    /// Loads one document and lets its registers reach `device`, which must outlive this object. A text that
    /// does not parse takes its place without features: the driver hands it out all the same.
    void add(std::string_view description, GenICam::IDevicePort& device);

    [[nodiscard]] std::size_t size() const noexcept { return documents_.size(); }
    /// Null for a text that does not parse.
    [[nodiscard]] GenICam::IGenICamDoc* document(std::size_t index) const {
        return documents_.at(index).get();
    }
    /// In the first document that has it; null for none.
    [[nodiscard]] GenICam::INode* find_node(std::string_view name) const;

    /// How the value of a path travels; `integer` for an unknown one.
    [[nodiscard]] value_form form_of(std::string_view path) const;
    /// 8 bytes: an integer, a double, or 1 and 0.
    [[nodiscard]] HRESULT get(std::string_view path, std::uint64_t& raw) const;
    [[nodiscard]] HRESULT set(std::string_view path, std::uint64_t raw) const;
    /// The name of the selected entry, or a string's text up to its first zero.
    [[nodiscard]] HRESULT get_text(std::string_view path, std::string& text) const;
    [[nodiscard]] HRESULT set_text(std::string_view path, std::string_view text) const;

    /// Writes the default of each number and switch that states one.
    void write_defaults() const;

private:
    [[nodiscard]] bool is_changeable(GenICam::INode& node) const;

    std::vector<std::unique_ptr<GenICam::IGenICamDoc>> documents_;
    std::map<std::string, std::string, std::less<>> locks_;
};

}  // namespace simcam
