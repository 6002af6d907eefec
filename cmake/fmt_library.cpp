// The one source that compiles the code of fmt. Debian's package has it as a native library only, and headers
// that bring it along cost every source that formats something several seconds.
#include <fmt/format-inl.h>

FMT_BEGIN_NAMESPACE
namespace detail {

template void buffer<char>::append(const char*, const char*);
template void vformat_to(buffer<char>&, string_view, basic_format_args<FMT_BUFFER_CONTEXT(char)>, locale_ref);
template auto thousands_sep_impl(locale_ref) -> thousands_sep_result<char>;
template auto decimal_point_impl(locale_ref) -> char;

}  // namespace detail
FMT_END_NAMESPACE
