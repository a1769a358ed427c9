// Reads one section out of an ELF file of either word size, in the byte order of this machine.

#pragma once

#include <string>

// THROWS: std::runtime_error when the file is no such file, or has no section of that name.
std::string elfSection(std::string const& file, std::string const& name);
