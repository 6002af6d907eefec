#include "tests/support/test_document.h"

#include "genicam/core/log.h"
#include "platform/debug_output.h"

#include <ostream>
#include <stdexcept>
#include <utility>

namespace test_support {
namespace {

using GenICam::node_type;

std::vector<std::string>& CapturedMessages() {
    static std::vector<std::string> messages;
    return messages;
}

void Capture(const char* text) { CapturedMessages().emplace_back(text); }

void PrintBytes(const Bytes& bytes, std::ostream& out) {
    static constexpr char digits[] = "0123456789ABCDEF";
    for (const std::uint8_t byte : bytes) out << ' ' << digits[byte >> 4] << digits[byte & 0xF];
}

std::string WithRoot(std::string_view elements) {
    std::string text = "<RegisterDescription>\n";
    text += elements;
    text += "\n<Port Name=\"Device\"/>\n</RegisterDescription>\n";
    return text;
}

}  // namespace

bool PortAccess::operator==(const PortAccess& other) const {
    return kind == other.kind && address == other.address && length == other.length && flags == other.flags &&
           data == other.data;
}

void PrintTo(const PortAccess& access, std::ostream* out) {
    *out << (access.kind == PortAccess::Kind::Read ? "read " : "write ") << access.length << " at 0x"
         << std::hex << access.address << " flags 0x" << access.flags << std::dec;
    PrintBytes(access.data, *out);
}

PortAccess ReadOf(std::uint64_t address, std::int64_t length, std::uint32_t flags) {
    return {PortAccess::Kind::Read, address, length, flags, {}};
}

PortAccess WriteOf(std::uint64_t address, Bytes data, std::uint32_t flags) {
    const auto length = static_cast<std::int64_t>(data.size());
    return {PortAccess::Kind::Write, address, length, flags, std::move(data)};
}

std::error_code RecordingDevice::read(std::uint64_t address, void* buffer, std::int64_t length,
                                      std::uint32_t flags) {
    if (const std::error_code failure = Begin(ReadOf(address, length, flags))) return failure;
    if (length <= 0) return {};
    const Bytes bytes = At(address, static_cast<std::size_t>(length));
    auto* out = static_cast<std::uint8_t*>(buffer);
    for (const std::uint8_t byte : bytes) *out++ = byte;
    return {};
}

std::error_code RecordingDevice::write(std::uint64_t address, const void* buffer, std::int64_t length,
                                       std::uint32_t flags) {
    Bytes data;
    if (length > 0) {
        const auto* first = static_cast<const std::uint8_t*>(buffer);
        data.assign(first, first + length);
    }
    PortAccess access = WriteOf(address, data, flags);
    access.length = length;
    if (const std::error_code failure = Begin(std::move(access))) return failure;
    Put(address, data);
    return {};
}

void RecordingDevice::Put(std::uint64_t address, const Bytes& bytes) {
    for (const std::uint8_t byte : bytes) memory_[address++] = byte;
}

Bytes RecordingDevice::At(std::uint64_t address, std::size_t count) const {
    Bytes bytes;
    bytes.reserve(count);
    for (; bytes.size() < count; ++address) {
        const auto found = memory_.find(address);
        const std::uint8_t untouched = background ? background(address) : std::uint8_t{0};
        bytes.push_back(found == memory_.end() ? untouched : found->second);
    }
    return bytes;
}

void RecordingDevice::FailAccess(std::size_t n, std::error_code failure) {
    accesses_until_failure_ = n;
    failure_ = failure;
}

std::vector<PortAccess> RecordingDevice::TakeAccesses() { return std::exchange(accesses_, {}); }

std::error_code RecordingDevice::Begin(PortAccess access) {
    std::error_code outcome;
    if (before_access) outcome = before_access(access);
    if (records) accesses_.push_back(std::move(access));
    if (accesses_until_failure_ != 0 && --accesses_until_failure_ == 0) return failure_;
    return outcome;
}

LogCapture::LogCapture() {
    CapturedMessages().clear();
    GenICam::log_threshold = GenICam::log_rejection;
    platform::set_debug_sink(Capture);
}

LogCapture::~LogCapture() {
    platform::set_debug_sink(nullptr);
    GenICam::log_threshold = 0;
}

std::vector<std::string> LogCapture::Take() { return std::exchange(CapturedMessages(), {}); }

TestDocument::TestDocument(std::string_view elements) : TestDocument(WholeText{WithRoot(elements)}) {}

TestDocument::TestDocument(WholeText whole, GenICam::load_options options)
    : doc_(GenICam::load_genicam_doc(whole.text.data(), whole.text.size(), options)) {
    load_messages = log.Take();
    if (doc_ == nullptr) return;
    if (GenICam::INode* port = doc_->find_port({})) static_cast<GenICam::IPort*>(port)->bind(&device);
}

GenICam::INode& TestDocument::Node(std::string_view name) const {
    GenICam::INode* node = doc_->find_node(name);
    if (node == nullptr) throw std::out_of_range("no node " + std::string(name));
    return *node;
}

GenICam::INode& TestDocument::NodeOfType(std::string_view name, node_type type) const {
    GenICam::INode& node = Node(name);
    if (node.get_node_type() != type) throw std::invalid_argument(std::string(name) + " is of another kind");
    return node;
}

GenICam::IInteger& TestDocument::Integer(std::string_view name) const {
    return static_cast<GenICam::IInteger&>(NodeOfType(name, node_type::integer));
}

GenICam::IFloat& TestDocument::Float(std::string_view name) const {
    return static_cast<GenICam::IFloat&>(NodeOfType(name, node_type::floating));
}

GenICam::IBoolean& TestDocument::Boolean(std::string_view name) const {
    return static_cast<GenICam::IBoolean&>(NodeOfType(name, node_type::boolean));
}

GenICam::ICommand& TestDocument::Command(std::string_view name) const {
    return static_cast<GenICam::ICommand&>(NodeOfType(name, node_type::command));
}

GenICam::IString& TestDocument::String(std::string_view name) const {
    return static_cast<GenICam::IString&>(NodeOfType(name, node_type::string));
}

GenICam::IEnumeration& TestDocument::Enumeration(std::string_view name) const {
    return static_cast<GenICam::IEnumeration&>(NodeOfType(name, node_type::enumeration));
}

GenICam::ICategory& TestDocument::Category(std::string_view name) const {
    return static_cast<GenICam::ICategory&>(NodeOfType(name, node_type::category));
}

GenICam::IRegister& TestDocument::Register(std::string_view name) const {
    return static_cast<GenICam::IRegister&>(NodeOfType(name, node_type::register_block));
}

GenICam::IPort& TestDocument::Port(std::string_view name) const {
    return static_cast<GenICam::IPort&>(NodeOfType(name, node_type::port));
}

ChangeCounter::ChangeCounter(GenICam::INode& node) : node_(node) {
    node_.register_callback([this](GenICam::INode*) { ++count_; });
}

ChangeCounter::~ChangeCounter() { node_.clear_callbacks(); }

}  // namespace test_support
