// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "filemanagers/client/FileSelection.h"
#include "filemanagers/gtk3/FileObjects.h"

namespace sprig::filemanagers {

/// Selections in the views of Thunar, Nemo and Caja. None of them has a public interface, so all is found by
/// the names of types, properties and signals, and looked at before it is used: where something is not as
/// known here, the selection is impossible.
NewFileSelection selectionInViews(FileObjects objects);

}  // namespace sprig::filemanagers
