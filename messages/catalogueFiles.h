// Where catalogues lie, and the table of modules that tells which of them make up a module.
//
// Both are looked for in two folders, in this order: share/PRODUCT/catalogues below the install
// root (platform/files/installRoot.h); then the one that JUNTORA_CATALOGUES names.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace juntora {

/// Reads a catalogue by its bare name, from the first folder that has it. Returns an empty text,
/// with the bytes and the path; else what is wrong and what to do about it.
std::string readCatalogueFile(const std::string& name, std::string* bytes, std::string* path);

/// Reads the table of modules, "modules.txt" of each folder that has one: a line each, the module
/// and the names of its files between blanks; "#" begins a comment. Calls `row(module, file)` for
/// each file in order. A table that is there and cannot be read is as one without lines. Returns
/// what is wrong with such, a line each, or that there is no table at all; empty if nothing is.
std::string readModuleTable(const std::function<void(std::string_view, std::string_view)>& row);

}  // namespace juntora
