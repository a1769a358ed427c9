#include "ElfSection.h"

#include <cstring>
#include <elf.h>
#include <fstream>
#include <stdexcept>

namespace {

// The bytes of a file; every read is checked against its end.
class Image {
public:
  explicit Image(std::string const& file) : in_(file, std::ios::binary) {}
  std::string bytes(std::size_t offset, std::size_t count) const {
    std::string bytes(count, '\0');
    in_.seekg(static_cast<std::streamoff>(offset));
    if (!in_.read(bytes.data(), static_cast<std::streamsize>(count)))
      throw std::runtime_error("ends too early");
    return bytes;
  }
  template <class T> T read(std::size_t offset) const {
    T value;
    std::memcpy(&value, bytes(offset, sizeof value).data(), sizeof value);
    return value;
  }

private:
  mutable std::ifstream in_;
};

template <class Header, class Section> class Sections {
public:
  explicit Sections(Image const& image) : image_(image), header_(image.read<Header>(0)) {}

  std::string named(std::string const& name) const {
    std::string const names = contents(at(header_.e_shstrndx));
    for (unsigned i = 0; i < header_.e_shnum; ++i)
      if (at(i).sh_name < names.size() && name == names.c_str() + at(i).sh_name) return contents(at(i));
    throw std::runtime_error("no section " + name);
  }

private:
  Section at(unsigned index) const {
    return image_.read<Section>(header_.e_shoff + index * std::size_t{header_.e_shentsize});
  }
  std::string contents(Section const& section) const {
    return image_.bytes(section.sh_offset, section.sh_size);
  }

  Image const& image_;
  Header header_;
};

} // namespace

std::string elfSection(std::string const& file, std::string const& name) {
  Image const image(file);
  std::string const identity = image.bytes(0, EI_NIDENT);
  if (identity.compare(0, SELFMAG, ELFMAG) != 0) throw std::runtime_error(file + " is no ELF file");
  if (identity[EI_CLASS] == ELFCLASS64) return Sections<Elf64_Ehdr, Elf64_Shdr>(image).named(name);
  return Sections<Elf32_Ehdr, Elf32_Shdr>(image).named(name);
}
