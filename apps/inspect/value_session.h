#pragma once

#include "apps/inspect/camera/write_shield.h"
#include "apps/inspect/command.h"
#include "apps/inspect/description_options.h"
#include "apps/inspect/feature_reader.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

namespace selvane_inspect {

/// A description to be read and written, and a twin of it in the same state in which every operation is
/// rehearsed. So what is seen at the registers is what the engine does by itself, with caches that nobody
/// else has filled.
class value_session {
public:
    explicit value_session(const description_options& options);

    [[nodiscard]] description& actual() noexcept { return *actual_; }
    [[nodiscard]] evaluation_guard& guard() noexcept { return guard_; }

    /// Name, kind, access, value and unit of a feature.
    [[nodiscard]] feature_state read(GenICam::INode& feature);
    /// Writes a value given as text. Throws `inspect_error` when it is none or refused.
    void write(const std::string& name, GenICam::INode& feature, std::string_view text);

    /// What the last operation did at the registers.
    [[nodiscard]] const std::vector<port_access>& accesses() const noexcept { return accesses_; }

private:
    [[nodiscard]] GenICam::INode& twin_of(GenICam::INode& feature) const;

    std::unique_ptr<description> actual_;
    std::optional<write_shield> shield_;  // between the twin and a camera
    std::unique_ptr<description> twin_;
    evaluation_guard guard_;
    feature_reader reader_;
    std::vector<port_access> accesses_;
};

[[nodiscard]] std::string trace_text(const std::vector<port_access>& accesses);
[[nodiscard]] nlohmann::ordered_json trace_json(const std::vector<port_access>& accesses);

}  // namespace selvane_inspect
