/// @file
/// The names and values of the fields that the description of a message has, in the form of their
/// own name() and description(). A string for each field would cost more than the rest of the
/// description.
#pragma once

#include <ondrel/mode_s_fields.h>

#include "text.h"

#include <string_view>

namespace tolvarin::ondrel {

std::string_view nameOf(ModeSMessageField::Designator designator);

text::Line& operator<<(text::Line& line, const ModeSMessageFieldAA& field);
text::Line& operator<<(text::Line& line, const ModeSMessageFieldAC& field);
text::Line& operator<<(text::Line& line, const ModeSMessageFieldAF& field);
text::Line& operator<<(text::Line& line, const ModeSMessageFieldCA& field);
text::Line& operator<<(text::Line& line, const ModeSMessageFieldCF& field);
text::Line& operator<<(text::Line& line, const ModeSMessageFieldFS& field);
text::Line& operator<<(text::Line& line, const ModeSMessageFieldID& field);
text::Line& operator<<(text::Line& line, const ModeSMessageFieldME& field);
text::Line& operator<<(text::Line& line, const ModeSMessageFieldPI& field);
text::Line& operator<<(text::Line& line, const ModeSMessageFieldVS& field);

} // namespace tolvarin::ondrel
