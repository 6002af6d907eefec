#pragma once

#include "genicam/core/message.h"

#include <cstdint>
#include <string_view>

/// Every message of the engine. People search for these texts: they stay as they are, slips among them.
namespace GenICam::messages {

// The document.

inline constexpr message<std::string_view, std::int64_t> malformed_xml{
    message_subject::nothing, "The XML file does contain errors : \"%s\" @ offset=%td.\n"};
inline constexpr message<std::string_view, std::string_view, std::uint64_t> too_many_dependents{
    message_subject::nothing,
    "GenICam::genicam_doc::close_dependents, %s (\"%s\"). The lists of dependents have more than %llu "
    "entries.\n"};

// Links and words that every element may have.

inline constexpr message<> invalidator_unresolved{message_subject::kind_and_name,
                                                  "GenICam::node_base_data::resolve_references, %s (\"%s\"). "
                                                  "Failed to resolve \"pInvalidator\" xml element.\n"};
inline constexpr message<std::string_view, std::string_view> access_mode_turned{
    message_subject::kind_and_name,
    "GenICam::node_base_data::set_actual_access_mode, %s (\"%s\"). Trying to change access mode from "
    "ImposedAccessMode == %s to %s.\n"};
inline constexpr message<std::string_view, std::string_view> node_unresolved{
    message_subject::kind_and_name,
    "GenICam::node_base_data::resolve_node, %s (\"%s\"). Failed to resolve \"%s\" xml node contents "
    "(\"%.*s\").\n"};
inline constexpr message<std::string_view, std::string_view> listed_node_unresolved{
    message_subject::kind_and_name,
    "GenICam::node_base_data::resolve_node_list, %s (\"%s\"). Failed to resolve \"%s\" xml node contents "
    "(\"%.*s\").\n"};
inline constexpr message<std::string_view> invalid_imposed_access_mode{
    message_subject::nothing, "Invalid contents of \"ImposedAccessMode\" node (\"%.*s\"\n"};
inline constexpr message<std::string_view> invalid_access_mode{
    message_subject::nothing, "Invalid contents of \"AccessMode\" node (\"%.*s\"\n"};
inline constexpr message<std::string_view> invalid_endianess{
    message_subject::nothing, "Invalid contents of \"Endianess\" node (\"%.*s\"\n"};
inline constexpr message<std::string_view> invalid_sign{message_subject::nothing,
                                                        "Invalid contents of \"Sign\" node (\"%.*s\"\n"};
inline constexpr message<std::string_view> invalid_cachable{
    message_subject::nothing, "Invalid contents of \"Cachable\" node (\"%.*s\"\n"};
inline constexpr message<std::string_view> invalid_visibility{
    message_subject::kind_and_name,
    "GenICam::node_base_data::getVisibility, %s (\"%s\"). Failed to parse \"Visibility\" xml node contents "
    "(\"%.*s\").\n"};
inline constexpr message<std::string_view> invalid_streamable{
    message_subject::kind_and_name,
    "GenICam::node_base_data::get_streamable, %s (\"%s\"). Failed to parse \"Streamable\" xml node contents "
    "(\"%.*s\").\n"};
inline constexpr message<std::string_view> invalid_representation{
    message_subject::nothing, "Invalid contents (\"%.*s\") of Integer \"Representation\" xml node.\n"};
inline constexpr message<std::string_view> invalid_float_representation{
    message_subject::nothing, "Invalid contents (\"%.*s\") of Float \"Representation\" xml node.\n"};
inline constexpr message<std::string_view> invalid_display_notation{
    message_subject::nothing, "Invalid contents (\"%.*s\") of \"DisplayNotation\" xml node.\n"};
inline constexpr message<std::string_view> invalid_display_precision{
    message_subject::nothing, "Invalid contents (\"%.*s\") of \"DisplayPrecision\" xml node.\n"};

// Pairs of a number and a link, and values of linked nodes.

inline constexpr message<std::string_view, std::string_view> pair_has_both{
    message_subject::kind_and_name,
    "GenICam::resolve_link_or_value_, %s \"%s\". Node contains both \"%s\" and \"%s\" nodes.\n"};
inline constexpr message<std::string_view> pair_number_invalid{
    message_subject::kind_and_name,
    "GenICam::resolve_link_or_value_, %s \"%s\". Failed to parse content of \"%s\" node.\n"};
inline constexpr message<std::string_view> pair_link_unresolved{
    message_subject::kind_and_name,
    "GenICam::resolve_link_or_value_, %s \"%s\". Failed to resolve node in \"%s\" .\n"};
inline constexpr message<std::string_view, std::string_view> extension_pair_has_both{
    message_subject::kind_and_name,
    "GenICam::resolve_link_or_value_from_contents, %s \"%s\". XML element contains both \"%s\" and \"%s\" "
    "nodes.\n"};
inline constexpr message<std::string_view> extension_pair_number_invalid{
    message_subject::kind_and_name,
    "GenICam::resolve_link_or_value_from_contents, %s \"%s\". Failed to parse content of \"%s\" node.\n"};
inline constexpr message<std::string_view> extension_pair_link_unresolved{
    message_subject::kind_and_name,
    "GenICam::resolve_link_or_value_from_contents, %s \"%s\". Failed to resolve node in \"%s\" .\n"};
inline constexpr message<> index_unresolved{
    message_subject::kind_and_name,
    "GenICam::resolve_pIndex, %s (\"%s\"). Invalid or no IInteger base \"pIndex\" element.\n"};
inline constexpr message<std::int64_t> get_without_value{
    message_subject::nothing,
    "GenICam::get_eval_val, get value on a (%d) node_type seems to be futile ...\n"};
inline constexpr message<std::int64_t> set_without_value{
    message_subject::nothing,
    "GenICam::set_eval_val, get value on a (%d) node_type seems to be futile ...\n"};

// Tables of indexed values.

inline constexpr message<> table_default_invalid{
    message_subject::kind_and_name,
    "GenICam::value_eval_indexed::resolve_references, %s (\"%s\"). Invalid or no "
    "\"pValueDefault\"/\"ValueDefault\" element.\n"};
inline constexpr message<> index_of_link_invalid{
    message_subject::kind_and_name,
    "GenICam::value_eval_indexed::resolve_references, %s (\"%s\"). Failed to parse \"Index\" attribute of "
    "\"pValueIndexed\" element.\n"};
inline constexpr message<> indexed_link_unresolved{
    message_subject::kind_and_name,
    "GenICam::value_eval_indexed::resolve_references, %s (\"%s\"). Failed to parse resolve contents of "
    "\"pValueIndexed\" element.\n"};
inline constexpr message<> index_of_constant_invalid{
    message_subject::kind_and_name,
    "GenICam::value_eval_indexed::resolve_references, %s (\"%s\"). Failed to parse \"Index\" attribute of "
    "\"ValueIndexed\" element.\n"};
inline constexpr message<> indexed_constant_invalid{
    message_subject::kind_and_name,
    "GenICam::value_eval_indexed::resolve_references, %s (\"%s\"). Failed to parse resolve contents of "
    "\"ValueIndexed\" element.\n"};

// Integers.

inline constexpr message<> integer_constant_value_invalid{
    message_subject::name,
    "GenICam::integer_constant_value_type::_resolve_references, Integer (\"%s\"). Failed to parse or resolve "
    "\"Value\" xml element.\n"};
inline constexpr message<> integer_floating_value_invalid{
    message_subject::name,
    "GenICam::integer_floating_value_type::_resolve_references, Integer (\"%s\"). Failed to parse or resolve "
    "\"Value\" xml element.\n"};
inline constexpr message<> integer_link_unresolved{
    message_subject::name,
    "GenICam::integer_pValue_type::_resolve_references, Integer (\"%s\"). Failed to parse or resolve "
    "\"pValue\" xml element.\n"};
inline constexpr message<> integer_copy_source_unresolved{
    message_subject::name,
    "GenICam::integer_pValueCopy_type::_resolve_references, Integer (\"%s\"). Failed to parse or resolve "
    "\"pValue\" xml element.\n"};
inline constexpr message<> integer_copy_target_unresolved{
    message_subject::name,
    "GenICam::integer_pValueCopy_type::_resolve_references, Integer (\"%s\"). Failed to parse or resolve "
    "\"pValueCopy\" xml element.\n"};
inline constexpr message<std::int64_t> integer_value_out_of_range{
    message_subject::name,
    "GenICam::integer_floating_value_type::set_val, Integer (\"%s\"). Failed range check for parameter "
    "value=%lld.\n",
    log_rejection};
inline constexpr message<std::int64_t> integer_link_out_of_range{
    message_subject::name,
    "GenICam::integer_pValue_type::set_val, Integer (\"%s\"). Failed range check for parameter value=%lld.\n",
    log_rejection};
inline constexpr message<std::int64_t> integer_copy_out_of_range{
    message_subject::name,
    "GenICam::integer_pValueCopy_type::set_val, Integer (\"%s\"). Failed range check for parameter "
    "value=%lld.\n",
    log_rejection};
inline constexpr message<std::int64_t> integer_index_out_of_range{
    message_subject::name,
    "GenICam::integer_pIndex_type::set_val, Integer (\"%s\"). Failed range check for parameter value=%lld.\n",
    log_rejection};

// Floats. A table of floats prints the bits of the number, and under the name of an integer.

inline constexpr message<> float_constant_value_invalid{
    message_subject::name,
    "GenICam::float_constant_value_type::_resolve_references, Float (\"%s\"). Failed to parse \"Value\" xml "
    "element.\n"};
inline constexpr message<> float_floating_value_invalid{
    message_subject::name,
    "GenICam::float_floating_value_type::_resolve_references, Float (\"%s\"). Failed to parse or resolve "
    "\"pValue\" xml element.\n"};
inline constexpr message<> float_link_unresolved{
    message_subject::name,
    "GenICam::float_pValue_type::_resolve_references, Float (\"%s\"). Failed to parse or resolve \"pValue\" "
    "xml element.\n"};
inline constexpr message<double> float_value_out_of_range{
    message_subject::name,
    "GenICam::float_floating_value_type::set_val, Float (\"%s\"). Failed range check for parameter "
    "value=%e.\n",
    log_rejection};
inline constexpr message<double> float_link_out_of_range{
    message_subject::name,
    "GenICam::float_pValue_type::set_val, Float (\"%s\"). Failed range check for parameter value=%e.\n",
    log_rejection};
inline constexpr message<std::int64_t> float_index_out_of_range{
    message_subject::name,
    "GenICam::float_pIndex_type::set_val, Integer (\"%s\"). Failed range check for parameter value=%lld.\n",
    log_rejection};

// Booleans and commands.

inline constexpr message<> boolean_link_unresolved{
    message_subject::name,
    "GenICam::boolean_pValue_type::_resolve_references, Boolean (\"%s\"). Failed to parse or resolve "
    "\"pValue\" xml element.\n"};
inline constexpr message<> boolean_value_invalid{
    message_subject::name,
    "GenICam::boolean_Value_type::_resolve_references, Boolean (\"%s\"). Failed to parse or resolve "
    "\"Value\" xml element.\n"};
inline constexpr message<std::int64_t> boolean_link_is_neither{
    message_subject::name,
    "GenICam::boolean_pValue_type::get_val, Boolean (\"%s\"). Invalid floating_value contents=%lld.\n"};
inline constexpr message<std::int64_t> boolean_value_is_neither{
    message_subject::name,
    "GenICam::boolean_Value_type::get_val, Boolean (\"%s\"). Invalid floating_value contents=%lld.\n"};
inline constexpr message<> command_value_invalid{
    message_subject::name,
    "GenICam::command_Value_type::_resolve_references, Command (\"%s\"). Failed to parse contents of "
    "\"Value\" xml node.\n"};
inline constexpr message<> command_link_unresolved{
    message_subject::name,
    "GenICam::command_pValue_type::_resolve_references, Command (\"%s\"). Failed to parse/resolve contents "
    "of \"pValue\" xml node.\n"};
inline constexpr message<> command_value_lacks_number{
    message_subject::name,
    "GenICam::command_Value_type::_resolve_references, Command (\"%s\"). Failed to parse contents of "
    "\"CommandValue\"/\"pCommandValue\" xml node.\n"};
inline constexpr message<> command_link_lacks_number{
    message_subject::name,
    "GenICam::command_pValue_type::_resolve_references, Command (\"%s\"). Failed to parse contents of "
    "\"CommandValue\"/\"pCommandValue\" xml node.\n"};

// Enumerations, categories and strings.

inline constexpr message<> entry_value_invalid{
    message_subject::name,
    "GenICam::enum_entry_type::enum_entry_type, EnumEntry (\"%s\"). Failed to parse \"Value\" xml node.\n"};
inline constexpr message<> enumeration_value_invalid{
    message_subject::name,
    "GenICam::enumeration_Value_type::_resolve_references, Enumeration (\"%s\"). Failed to parse \"Value\" "
    "xml element.\n"};
inline constexpr message<> enumeration_link_unresolved{
    message_subject::name,
    "GenICam::enumeration_pValue_type::_resolve_references, Enumeration (\"%s\"). Failed to parse/resolve "
    "\"pValue\" xml element.\n"};
inline constexpr message<std::int64_t> enumeration_value_has_no_entry{
    message_subject::name,
    "GenICam::enumeration_Value_type::get_selected_entry, Enumeration (\"%s\"). Failed to find EnumEntry "
    "corresponding to current value=%lld.\n"};
inline constexpr message<std::int64_t> enumeration_link_has_no_entry{
    message_subject::name,
    "GenICam::enumeration_pValue_type::get_selected_entry, Enumeration (\"%s\"). Failed to find EnumEntry "
    "corresponding to current value=%lld.\n"};
inline constexpr message<std::string_view> feature_unresolved{
    message_subject::name,
    "GenICam::category_type::_resolve_references, Category (\"%s\"). Failed to resolve \"pFeature\" for "
    "feature=%.*s.\n",
    log_rejection};
inline constexpr message<> string_link_unresolved{
    message_subject::name,
    "GenICam::string_type::_resolve_references, String (\"%s\"). Failed to parse or resolve \"pValue\" xml "
    "node."};

// Addresses and lengths of registers. An address that is computed does not know whose it is.

inline constexpr message<> address_invalid{
    message_subject::kind_and_name,
    "calc_address_nodes_sum, %s (\"%s\"). Node contains invalid \"Address\" XML element.\n"};
inline constexpr message<> fixed_length_invalid{
    message_subject::kind_and_name,
    "GenICam::register_const_address_eval::register_const_address_eval, %s (\"%s\"). Failed to parse "
    "\"Length\" XML element.\n"};
inline constexpr message<> length_missing{
    message_subject::name,
    "resolve_references_len, node=\"%s\". Node contains neither pLength nor Length XML elements.\n"};
inline constexpr message<> address_formula_unresolved{
    message_subject::kind_and_name,
    "GenICam::address_eval::resolve_references, %s (\"%s\"). Node contains invalid \"IntSwissKnife\" XML "
    "element.\n"};
inline constexpr message<> address_link_unresolved{message_subject::kind_and_name,
                                                   "GenICam::address_eval::resolve_references, %s (\"%s\"). "
                                                   "Node contains invalid \"pAddress\" XML element.\n"};
inline constexpr message<> address_index_unresolved{message_subject::kind_and_name,
                                                    "GenICam::address_eval::resolve_references, %s (\"%s\"). "
                                                    "Node contains invalid \"pIndex\" XML element.\n"};
inline constexpr message<> address_offset_invalid{message_subject::kind_and_name,
                                                  "GenICam::address_eval::resolve_references, %s (\"%s\"). "
                                                  "Node contains invalid \"pIndex/@Offset\" XML element.\n"};
inline constexpr message<> address_offset_unresolved{
    message_subject::kind_and_name,
    "GenICam::address_eval::resolve_references, %s (\"%s\"). Node contains invalid \"pIndex/@pOffset\" XML "
    "element.\n"};
inline constexpr message<> address_index_without_value{
    message_subject::nothing,
    "GenICam::address_eval::calc_address, RegisterNodeTemplate (\"Unknown\"). Failed to fetch value from "
    "\"pIndex\" element.\n"};
inline constexpr message<> address_offset_without_value{
    message_subject::nothing,
    "GenICam::address_eval::calc_address, RegisterNodeTemplate (\"Unknown\"). Failed to fetch value from "
    "\"pIndex/@pOffset\" element.\n"};
inline constexpr message<> address_link_without_value{
    message_subject::nothing,
    "GenICam::address_eval::calc_address, RegisterNodeTemplate (\"Unknown\"). Failed to fetch value from "
    "\"pAddres\" element.\n"};

// Registers and ports.

inline constexpr message<std::int64_t> int_register_get_length{
    message_subject::name,
    "GenICam::int_reg_type_base::get_val, IntReg (\"%s\"). Invalid Length value=%lld out of range [1;8].\n"};
inline constexpr message<std::int64_t> int_register_set_length{
    message_subject::name,
    "GenICam::int_reg_type_base::set_val, IntReg (\"%s\"). Invalid Length value=%lld out of range [1;8].\n"};
inline constexpr message<std::int64_t> float_register_get_length{
    message_subject::nothing,
    "GenICam::float_reg_type_base::get_val, length value out of range [1;8]. value=%I64d.\n"};
inline constexpr message<std::int64_t> float_register_set_length{
    message_subject::nothing,
    "GenICam::float_reg_type_base::set_val, length value should be either 4 or 8. value=%I64d.\n"};
inline constexpr message<> masked_length_invalid{message_subject::kind_and_name,
                                                 "GenICam::masked_int_reg_type_base::_resolve_references, %s "
                                                 "(\"%s\"). Failed to parse \"Length\" XML element.\n"};
inline constexpr message<> register_port_unresolved{
    message_subject::name,
    "GenICam::register_type::_resolve_references, Register (\"%s\"). Failed resolve port.\n"};
inline constexpr message<> device_port_read_unbound{
    message_subject::name,
    "GenICam::port_device_type::read, IPort (\"%s\"). Failed due to no bind called.\n"};
inline constexpr message<> device_port_write_unbound{
    message_subject::name,
    "GenICam::port_device_type::write, IPort (\"%s\"). Failed due to no bind called.\n"};
inline constexpr message<> device_port_bound_already{
    message_subject::name,
    "GenICam::port_device_type::bind, IPort (\"%s\"). Failed due it already being bound.\n"};
inline constexpr message<> chunk_id_missing{
    message_subject::name,
    "GenICam::port_chunk_type::_resolve_references IPort (\"%s\"). Failed to fetch ChunkID or pChunkID.\n"};
inline constexpr message<> chunk_port_read_unbound{
    message_subject::name, "GenICam::port_chunk_type::read, IPort (\"%s\"). Failed due to no bind called.\n"};
inline constexpr message<std::uint64_t> chunk_port_read_address{
    message_subject::name,
    "GenICam::port_chunk_type::read, IPort (\"%s\"). Failed due to out of range address=%llu parameter.\n"};
inline constexpr message<std::int64_t> chunk_port_read_length{
    message_subject::name,
    "GenICam::port_chunk_type::read, IPort (\"%s\"). Failed due to out of range data_len=%lld parameter.\n"};
inline constexpr message<> chunk_port_write_unbound{
    message_subject::name,
    "GenICam::port_chunk_type::write, IPort (\"%s\"). Failed due to no bind called.\n"};
inline constexpr message<std::uint64_t> chunk_port_write_address{
    message_subject::name,
    "GenICam::port_chunk_type::write, IPort (\"%s\"). Failed due to out of range address=%llu parameter.\n"};
inline constexpr message<std::int64_t> chunk_port_write_length{
    message_subject::name,
    "GenICam::port_chunk_type::write, IPort (\"%s\"). oFailed due to out of range data_len=%lld "
    "parameter.\n"};
inline constexpr message<> chunk_port_bound_already{
    message_subject::name,
    "GenICam::port_chunk_type::bind, IPort (\"%s\"). Failed due to it already being bound.\n"};

// Formulas. The maximum shares the message of the minimum.

inline constexpr message<std::string_view> name_unresolved{
    message_subject::nothing,
    "math_parser::add_identifier_token, failed to map variable \"%.*s\" to either a constant or a pValue.\n"};
inline constexpr message<std::string_view, std::string_view> formula_refused{
    message_subject::nothing, "km_parse_tree failed with result=%s. Last token view:\n%s.\n"};
inline constexpr message<std::string_view, std::string_view> constant_invalid{
    message_subject::nothing,
    "GenICam::converter::build_formula_name_lookup, failed to parse Constant named=\"%.*s\" "
    "content=\"%.*s\".\n"};
inline constexpr message<> enumeration_of_variable_unresolved{
    message_subject::nothing,
    "GenICam::converter::build_formula_name_lookup, did not find enumeration for pVariable with \".Entry\" "
    "specifier.\n"};
inline constexpr message<> entry_of_variable_unresolved{
    message_subject::nothing,
    "GenICam::converter::build_formula_name_lookup, did not find entry in enumeration for pVariable with "
    "\".Entry\" specifier.\n"};
inline constexpr message<> minimum_of_variable_missing{
    message_subject::nothing,
    "create_resulting_entry, invalid node type for pVariable with \".Min\" specifier.\n"};
inline constexpr message<> increment_of_variable_missing{
    message_subject::nothing,
    "create_resulting_entry, invalid node type for pVariable with \".Inc\" specifier.\n"};
inline constexpr message<std::string_view, std::string_view> expression_invalid{
    message_subject::nothing,
    "GenICam::converter::variable_map_impl::resolve_converter_references, failed to parse Constant "
    "named=\"%.*s\" content=\"%.*s\".\n"};
inline constexpr message<> converter_link_unresolved{
    message_subject::name,
    "GenICam::converter::converter_impl::resolve_converter_references, Converter (\"%s\"). Failed due to "
    "missing pValue element.\n"};
inline constexpr message<> converter_formula_missing{
    message_subject::name,
    "GenICam::converter::converter_impl::resolve_converter_references, Converter (\"%s\"). Failed due to "
    "missing FormulaFrom/FormulaTo member(s).\n"};
inline constexpr message<std::string_view> converter_formula_invalid{
    message_subject::name,
    "GenICam::converter::converter_impl::resolve_converter_references, Converter (\"%s\"). failed to "
    "evaluate \"%.*s\"\n"};
inline constexpr message<> swissknife_formula_missing{
    message_subject::name,
    "GenICam::converter::swissknife_impl::resolve_converter_references, SwissKnife (\"%s\"). Failed due to "
    "missing Formula member.\n"};
inline constexpr message<std::string_view> swissknife_formula_invalid{
    message_subject::name,
    "GenICam::converter::swissknife_impl::resolve_converter_references, SwissKnife (\"%s\"). failed to "
    "evaluate \"%.*s\"\n"};

}  // namespace GenICam::messages
