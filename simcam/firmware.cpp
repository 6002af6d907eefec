#include "simcam/firmware.h"

#include "simcam/register_memory.h"

namespace simcam {
namespace {

namespace reg = firmware_register;

constexpr std::uint64_t word = 4;
constexpr std::uint64_t warm = 4000;  // 1/100 degree
constexpr std::uint64_t cool = 3650;
constexpr std::uint64_t zoom_home = 200;
constexpr std::uint64_t software_trigger_word = 8;
constexpr std::uint64_t trigger_on = 1;
constexpr std::uint64_t offset_grid = 4;
constexpr std::uint64_t table_entries = 256;
constexpr std::uint64_t table_step = 16;

struct area {
    std::uint64_t address;
    std::uint64_t length;
};

constexpr area read_only[] = {
    {0x0000, 0x60},                 // identity
    {reg::status, word},            //
    {reg::temperature, word},       //
    {reg::frame_counter, word},     //
    {0x1004, 12},                   // tick and limits of the exposure
    {reg::sensor_width, 2 * word},  //
    {0x1508, word},                 // size of the look-up table
};
constexpr area write_only[] = {{reg::reset, word}, {reg::software_trigger, word}};

void count_frame(register_memory& memory) {
    memory.poke_number(reg::frame_counter, word, memory.peek_number(reg::frame_counter, word) + 1);
}

void warm_up(register_memory& memory) {
    const std::uint64_t now = memory.peek_number(reg::temperature, 2);
    memory.poke_number(reg::temperature, 2, now >= warm ? cool : now + 1);
}

void trigger_by_software(register_memory& memory) {
    const bool on = (memory.peek_number(reg::trigger, word, true) & trigger_on) != 0;
    if (on && memory.peek_number(reg::software_trigger, word) == software_trigger_word) count_frame(memory);
}

void center(register_memory& memory, std::uint64_t sensor, std::uint64_t size, std::uint64_t offset) {
    const std::uint64_t all = memory.peek_number(sensor, word);
    const std::uint64_t used = memory.peek_number(size, word);
    const std::uint64_t spare = all > used ? all - used : 0;
    memory.poke_number(offset, word, spare / 2 / offset_grid * offset_grid);
}

void follow_center(register_memory& memory) {
    if (memory.peek_number(reg::auto_center, word) == 0) return;
    center(memory, reg::sensor_width, reg::width, reg::offset_x);
    center(memory, reg::sensor_height, reg::height, reg::offset_y);
}

void run_lens_command(register_memory& memory) {
    if (memory.peek_number(reg::lens_command, word) == 1) memory.poke_number(reg::zoom, 2, zoom_home, true);
    memory.poke_number(reg::lens_command, word, 0);
}

}  // namespace

void install_firmware(register_memory& memory) {
    for (const area& kept : read_only) memory.protect(kept.address, kept.length, area_access::read_only);
    for (const area& hidden : write_only)
        memory.protect(hidden.address, hidden.length, area_access::write_only);
    memory.before_read(reg::temperature, 2, warm_up);
    memory.before_read(reg::frame_counter, word, count_frame);
    memory.after_write(reg::software_trigger, word, trigger_by_software);
    memory.after_write(reg::lens_command, word, run_lens_command);
    memory.after_write(reg::user_set_command, word,
                       [](register_memory& own) { own.poke_number(reg::user_set_command, word, 0); });
    memory.after_write(reg::width, 2 * word, follow_center);
    memory.after_write(reg::offset_x, 3 * word, follow_center);
    for (std::uint64_t entry = 0; entry < table_entries; ++entry) {
        memory.poke_number(reg::look_up_table + 2 * entry, 2, entry * table_step, true);
    }
}

}  // namespace simcam
