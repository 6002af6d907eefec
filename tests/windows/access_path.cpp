#include "tests/windows/access_path.h"

#include "wire/device_set.h"

#include <pugixml.hpp>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <sstream>
#include <stdexcept>
#include <string_view>

namespace page_test {
namespace {

struct RegisterRow {
    std::string_view feature;
    const char* node;
    std::uint64_t address;
};

// The nodes of the small description that hold values, and where their registers are.
constexpr RegisterRow registers[] = {
    {"Changeable", "Changeable", 0x100},
    {"ExposureTime", "ExposureTime", 0x110},
    {"ExposureAuto", "ExposureAuto", 0x120},
    {"TriggerEnable", "TriggerEnable", 0x130},
    {"TriggerSoftware", "TriggerCount", 0x140},
    {"TriggerSource", "TriggerSource", 0x150},
    {"Zoom", "Zoom", 0x160},
    {"Saturation", "SaturationValue", 0x170},
};

class TextWriter final : public pugi::xml_writer {
public:
    void write(const void* data, std::size_t size) override {
        text.append(static_cast<const char*>(data), size);
    }
    std::string text;
};

std::uint64_t AddressOf(std::string_view feature) {
    for (const RegisterRow& row : registers) {
        if (row.feature == feature) return row.address;
    }
    throw std::invalid_argument("no register of " + std::string(feature));
}

std::uint64_t BitsOf(double value) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof(bits));
    return bits;
}
std::uint64_t BitsOf(int value) { return static_cast<std::uint64_t>(std::int64_t{value}); }

std::string HexOf(std::uint64_t bits) {
    std::string text;
    for (int at = 0; at < 8; ++at, bits >>= 8) {
        std::array<char, 4> byte{};
        std::snprintf(byte.data(), byte.size(), at == 0 ? "%02X" : " %02X",
                      static_cast<unsigned>(bits & 0xFF));
        text += byte.data();
    }
    return text;
}

template <class Number>
std::string TextOf(Number value) {
    std::ostringstream text;
    text << value;
    return text.str();
}

std::string RegisterText(std::uint64_t address) {
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "0x%08X", static_cast<unsigned>(address));
    return text.data();
}

void AddChild(pugi::xml_node parent, const char* name, const std::string& text) {
    parent.append_child(name).text().set(text.c_str());
}

// Moves the value of a node into a register; what the register then holds.
std::uint64_t MoveIntoRegister(pugi::xml_node node, std::uint64_t address) {
    const std::string value = node.child_value("Value");
    const bool real = std::string_view(node.name()) == "Float";
    const std::string name = std::string(node.attribute("Name").value()) + "Register";
    node.child("Value").set_name("pValue");
    node.child("pValue").text().set(name.c_str());
    pugi::xml_node made = node.parent().append_child(real ? "FloatReg" : "IntReg");
    made.append_attribute("Name").set_value(name.c_str());
    AddChild(made, "Address", std::to_string(address));
    AddChild(made, "Length", "8");
    AddChild(made, "AccessMode", "RW");
    AddChild(made, "pPort", "Device");
    AddChild(made, "Endianess", "LittleEndian");
    if (real) return BitsOf(std::stod(value));
    if (value == "true" || value == "false") return value == "true" ? 1 : 0;
    return std::stoull(value);
}

simcam::camera_options OverRegisters(simcam::camera_options options) {
    pugi::xml_document xml;
    if (!xml.load_string(options.descriptions.at(0).c_str())) throw std::logic_error("malformed");
    pugi::xml_node root = xml.document_element();
    root.append_child("Port").append_attribute("Name").set_value("Device");
    for (const RegisterRow& row : registers) {
        const pugi::xml_node node = root.find_child_by_attribute("Name", row.node);
        const std::uint64_t contents = MoveIntoRegister(node, row.address);
        options.memory += RegisterText(row.address) + ": " + HexOf(contents) + "\n";
    }
    TextWriter writer;
    xml.save(writer);
    options.descriptions.at(0) = writer.text;
    return options;
}

}  // namespace

void PrintTo(AccessPath access_path, std::ostream* out) { *out << NameOf(access_path); }

std::string NameOf(AccessPath access_path) {
    return access_path == AccessPath::Named ? "Named" : "Registers";
}

simcam::camera_options CameraOn(AccessPath access_path, const std::string& name) {
    simcam::camera_options options = *simcam::ready_made(name);
    options.named_access = access_path == AccessPath::Named;
    options.register_access = access_path == AccessPath::Registers;
    return options;
}

simcam::camera_options SimpleCamera(AccessPath access_path) {
    simcam::camera_options options = CameraOn(access_path, "simple");
    return access_path == AccessPath::Named ? options : OverRegisters(std::move(options));
}

bool IsOnAccessPath(AccessPath access_path, const simcam::driver_call& call) {
    if (call.kind == simcam::call_kind::query_supported) return true;
    if (call.set != wire::device_set) return true;
    if (call.id == SELVANE_DESCRIPTION_SIZE || call.id == SELVANE_DESCRIPTION_DATA) return true;
    return call.id == (access_path == AccessPath::Named ? SELVANE_NAMED_ACCESS : SELVANE_REGISTER_ACCESS);
}

std::string AccessPathLines::AnyRead() const {
    return access_path_ == AccessPath::Named ? "Get device 4 " : "Get device 3 ";
}
std::string AccessPathLines::AnyWrite() const {
    return access_path_ == AccessPath::Named ? "Set device 4 " : "Set device 3 ";
}

std::string AccessPathLines::AnyRead(const std::string& feature) const {
    return AnyRead() +
           (access_path_ == AccessPath::Named ? feature + "/Value" : RegisterText(AddressOf(feature)));
}
std::string AccessPathLines::AnyWrite(const std::string& feature) const {
    return AnyWrite() +
           (access_path_ == AccessPath::Named ? feature + "/Value" : RegisterText(AddressOf(feature)));
}

std::string AccessPathLines::Locked(const std::string& feature, bool enabled) const {
    const int lock = enabled ? 1 : 0;
    if (access_path_ == AccessPath::Named)
        return AnyRead() + feature + "/IsLocked -> " + TextOf(lock) + ", ok";
    return Read(feature == "TriggerSoftware" ? "TriggerEnable" : "Changeable", lock);
}

std::string AccessPathLines::Read(const std::string& feature, double value) const {
    return AnyRead(feature) + " -> " +
           (access_path_ == AccessPath::Named ? TextOf(value) : HexOf(BitsOf(value))) + ", ok";
}
std::string AccessPathLines::Read(const std::string& feature, int value) const {
    return AnyRead(feature) + " -> " +
           (access_path_ == AccessPath::Named ? TextOf(value) : HexOf(BitsOf(value))) + ", ok";
}
std::string AccessPathLines::Write(const std::string& feature, double value) const {
    return AnyWrite(feature) + " <- " +
           (access_path_ == AccessPath::Named ? TextOf(value) : HexOf(BitsOf(value))) + ", ok";
}
std::string AccessPathLines::Write(const std::string& feature, int value) const {
    return AnyWrite(feature) + " <- " +
           (access_path_ == AccessPath::Named ? TextOf(value) : HexOf(BitsOf(value))) + ", ok";
}
std::string AccessPathLines::RefusedWrite(const std::string& feature, int value) const {
    std::string line = Write(feature, value);
    return line.replace(line.rfind("ok"), 2, "0x80070005");
}

std::string AccessPathLines::ReadEntry(int index) const {
    if (access_path_ == AccessPath::Registers) return Read("TriggerSource", index);
    return AnyRead() + "TriggerSource/SelectedEntry -> " + (index == 0 ? "\"Software\"" : "\"Line1\"") +
           ", ok";
}
std::string AccessPathLines::WriteEntry(int index) const {
    if (access_path_ == AccessPath::Registers) return Write("TriggerSource", index);
    return AnyWrite() + "TriggerSource/SelectedEntry <- " + (index == 0 ? "\"Software\"" : "\"Line1\"") +
           ", ok";
}

std::string AccessPathLines::Push() const {
    if (access_path_ == AccessPath::Registers) return Write("TriggerSoftware", 1);
    return AnyWrite() + "TriggerSoftware/Execute <- 1, ok";
}

}  // namespace page_test
