// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <string_view>

/// What inputs of any bytes are tried on. Each function ends the process when what came out can't be right;
/// the sanitizers end it for everything else.
namespace sprig::fuzz {

/// A document, decoded and written and decoded again.
void tryConfiguration(std::string_view input);
/// A template's texts, the typed name and the folder, separated by NUL, rendered.
void tryRendering(std::string_view input);
/// A file name, split and numbered on.
void tryNames(std::string_view input);
/// A menu as it comes from the bus, read and written and made entries of.
void tryRows(std::string_view input);
/// A line between the extension and a dialog, read in both directions.
void tryDialogMessages(std::string_view input);

}  // namespace sprig::fuzz
