#include "apps/check/check_rule.h"

#include <iterator>

namespace selvane_check {
namespace {

constexpr check_rule rules[] = {
    {fault_kind::no_property_set, "no-property-set", severity::error,
     "Pages pass over an object without that interface.",
     "Answer IKsPropertySet {31EFAC30-515C-11D0-A9AA-00AA0061BE93} in QueryInterface."},
    {fault_kind::gate_refused, "gate-refused", severity::error,
     "Without the gate no page takes the camera, and none says why.",
     "Answer QuerySupported of the gate set, id 0, with bit 0 set, and Get with the record of the device "
     "kind."},
    {fault_kind::gate_kind, "gate-kind", severity::error, "Pages serve one kind of device alone.",
     "Write SELVANE_DEVICE_KIND into the first field of the answer."},
    {fault_kind::gate_short, "gate-short", severity::error,
     "Pages believe an answer of the record's whole size alone.",
     "Report 144 bytes, the size of selvane_device_kind_query."},
    {fault_kind::no_access, "no-access", severity::error,
     "An exception leaves SetObjects, which ends most hosts, and it does so before any page is shown.",
     "Support id 4 (names) or id 3 (registers) of the device set in QuerySupported."},
    {fault_kind::no_description, "no-description", severity::warning,
     "The pages show the built-in items alone.",
     "Answer id 1 of the device set for index 0 with the size of the description."},
    {fault_kind::description_size, "description-size", severity::error,
     "The pages stop asking for descriptions there.", "Answer id 1 with a uint32 and report 4 bytes."},
    {fault_kind::description_refused, "description-refused", severity::error,
     "A size was told and the text is refused: the pages stop asking for descriptions there.",
     "Answer id 2 for every index that id 1 answers for."},
    {fault_kind::description_length, "description-length", severity::warning,
     "Bytes that are not filled stay zero; a longer answer than announced ends the list of descriptions.",
     "Tell the same size in id 1 and id 2."},
    {fault_kind::description_cut, "description-cut", severity::error,
     "A description that is not well-formed lets an exception leave SetObjects, which ends most hosts.",
     "Hand out the whole text; see whether its size is that of the file."},
    {fault_kind::description_malformed, "description-malformed", severity::error,
     "A description that is not well-formed lets an exception leave SetObjects, which ends most hosts.",
     "Mend the XML; selvane_inspect lint tells line and column."},
    {fault_kind::description_endless, "description-endless", severity::error,
     "The list of descriptions ends where the driver refuses an index: the pages ask on until memory ends.",
     "Refuse every index but those of your descriptions."},
    {fault_kind::description_port, "description-port", severity::warning,
     "Pages reach registers through the port named Device alone.", "Name the port Device."},
    {fault_kind::description_marks, "description-marks", severity::warning,
     "Without marks no feature reaches a page.",
     "Mark a category with ZELItemGUID and features in it with ZELElementGUID; selvane_inspect lint tells "
     "what "
     "is lost on the way."},
    {fault_kind::description_deadly, "description-deadly", severity::error,
     "Over registers the pages would follow the description there, and the host would end or hang.",
     "Mend the description; selvane_inspect lint tells the place."},
    {fault_kind::driver_throws, "driver-throws", severity::error,
     "The pages take it for a failure where they can stop it, which is sure for exceptions of their own "
     "compiler "
     "alone; any other may end the host.",
     "Catch everything where the driver is called, and answer with an HRESULT."},
    {fault_kind::named_result, "named-result", severity::warning,
     "Every success counts as an answer: the page shows whatever stands in the buffer, which starts as "
     "zeros.",
     "Answer S_OK with a value, or a failure."},
    {fault_kind::named_no_bytes, "named-no-bytes", severity::warning,
     "The size is not looked at: the page shows whatever stands in the buffer, which starts as zeros.",
     "Fill all 8 bytes of a number and report them; where there is no value, fail."},
    {fault_kind::named_no_end, "named-no-end", severity::error,
     "The name of the selected entry is read up to its zero byte, and matches no entry without one.",
     "End the name with a zero byte within the 256 bytes."},
    {fault_kind::named_refused, "named-refused", severity::warning,
     "Without /IsImplemented a feature or entry is left out, without /IsLocked its control is grey, without "
     "a "
     "value a control is empty. Without /Min or /Max a float is left out of the page; of an integer the "
     "slider stands still at 0, its spin button does nothing, and the edit works.",
     "Answer these paths for every feature that the description marks."},
    {fault_kind::entry_unknown, "entry-unknown", severity::warning,
     "The box stays empty: in named access entries are found by their Name, byte for byte, in register "
     "access by their value.",
     "Answer with the Name of an EnumEntry that is implemented, not with its DisplayName or value; give each "
     "value that the register can have an EnumEntry."},
    {fault_kind::register_result, "register-result", severity::error,
     "In register access every success but S_OK counts as a failure: the control is empty.", "Answer S_OK."},
    {fault_kind::register_refused, "register-refused", severity::warning,
     "Without the register of a value the control is empty, without that of pIsLocked it is grey. Without "
     "that of a limit a float is left out of the page; of an integer the slider stands still at 0, its spin "
     "button does nothing, and the edit works.",
     "Answer every register that the description gives to a marked feature."},
    {fault_kind::register_short, "register-short", severity::warning,
     "The size is not looked at: what the driver did not write counts as part of the value.",
     "Fill as many bytes as are asked for and report them; where they are not there, fail."},
    {fault_kind::value_range, "value-range", severity::warning,
     "The slider stands at an end, does not move or moves the wrong way, and the edit shows a number that "
     "nobody meant.",
     "Answer a float with the 8 bytes of a double in named access, in register access in the length and byte "
     "order of its register; let Min, Max and value agree, and Inc be at least 1."},
    {fault_kind::vendor_short, "vendor-short", severity::error,
     "What is missing of a record stays zero: a slider without limits, a switch that is off.",
     "Fill the whole record and report its size."},
    {fault_kind::exposure_ticks, "exposure-ticks", severity::warning,
     "The item Exposure needs 109 even where 239 carries the value: it does not appear.",
     "Support 109 as well."},
    {fault_kind::focus_control, "focus-control", severity::warning,
     "The item Focus needs IAMCameraControl: it does not appear.",
     "Offer IAMCameraControl on the filter, or leave the focus properties out."},
    {fault_kind::write_refused, "write-refused", severity::warning,
     "A control that is enabled and whose change is refused falls back in front of the user.",
     "Take what \"/IsLocked\" says may be changed, or say that it may not."},
    {fault_kind::slow_call, "slow-call", severity::warning,
     "Every call holds up the host's window, and after each change every feature of the page is asked for "
     "its "
     "state and its value.",
     "Answer from what the driver knows, and talk to the camera on a thread of its own."},
};

constexpr bool in_order() {
    for (std::size_t at = 0; at < std::size(rules); ++at) {
        if (static_cast<std::size_t>(rules[at].kind) != at) return false;
    }
    return true;
}
static_assert(in_order());

}  // namespace

gsl::span<const check_rule> all_check_rules() noexcept { return rules; }

const check_rule& rule_of(fault_kind kind) noexcept { return rules[static_cast<std::size_t>(kind)]; }

}  // namespace selvane_check
