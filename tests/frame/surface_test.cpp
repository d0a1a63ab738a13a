// The shared object as a linker and a loader see it.
#include "harness/families.hpp"
#include <elf.h>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <set>
#include <vector>

namespace {

using namespace quevar::tool;

class Surface : public testing::Test {
protected:
    std::vector<char> file;

    template <class T> std::span<const T> table(std::size_t offset, std::size_t count) const {
        return {reinterpret_cast<const T *>(file.data() + offset), count};
    }
    const Elf64_Ehdr &header() const { return table<Elf64_Ehdr>(0, 1)[0]; }
    auto segments() const { return table<Elf64_Phdr>(header().e_phoff, header().e_phnum); }
    auto sections() const { return table<Elf64_Shdr>(header().e_shoff, header().e_shnum); }
    // The only section of its type.
    const Elf64_Shdr &section(unsigned type) const {
        for (const auto &s : sections())
            if (s.sh_type == type) return s;
        throw std::runtime_error("section missing");
    }
    auto dynamic() const {
        const auto &s = section(SHT_DYNAMIC);
        return table<Elf64_Dyn>(s.sh_offset, s.sh_size / sizeof(Elf64_Dyn));
    }
    const char *dynamic_string(std::size_t index) const {
        return file.data() + sections()[section(SHT_DYNSYM).sh_link].sh_offset + index;
    }

    void SetUp() override {
        std::ifstream in(QUEVAR_LIBRARY, std::ios::binary);
        file.assign(std::istreambuf_iterator<char>(in), {});
        ASSERT_GT(file.size(), sizeof(Elf64_Ehdr)) << QUEVAR_LIBRARY;
        ASSERT_EQ(header().e_type, ET_DYN);
    }
};

TEST_F(Surface, ExportsTheMembersOfAllFamiliesAndNothingElse) {
    std::set<std::string> expected, found;
    for (const auto &f : families())
        for (int width : widths)
            EXPECT_TRUE(expected.insert("__quevar_" + f.name(width)).second)
                << "listed twice: " << f.name(width);
    std::printf("quevar: %zu of 361 families stand\n", families().size());
    EXPECT_EQ(expected.size(), 2166u);

    const auto &s = section(SHT_DYNSYM);
    for (const auto &symbol : table<Elf64_Sym>(s.sh_offset, s.sh_size / sizeof(Elf64_Sym)).subspan(1)) {
        const std::string name = dynamic_string(symbol.st_name);
        EXPECT_NE(symbol.st_shndx, SHN_UNDEF) << "imports " << name;
        EXPECT_EQ(ELF64_ST_TYPE(symbol.st_info), STT_FUNC) << name;
        EXPECT_EQ(ELF64_ST_BIND(symbol.st_info), STB_GLOBAL) << name;
        EXPECT_EQ(ELF64_ST_VISIBILITY(symbol.st_other), STV_DEFAULT) << name;
        EXPECT_TRUE(found.insert(name).second) << name;
    }
    for (const auto &name : expected) EXPECT_TRUE(found.contains(name)) << "missing " << name;
    for (const auto &name : found) EXPECT_TRUE(expected.contains(name)) << "not a member: " << name;
}

TEST_F(Surface, LoadsWithoutDependenciesInitialisersAndRelocations) {
    std::string soname;
    for (const auto &entry : dynamic()) {
        if (entry.d_tag == DT_SONAME) soname = dynamic_string(entry.d_un.d_val);
        for (auto tag : {DT_NEEDED, DT_INIT, DT_FINI, DT_INIT_ARRAY, DT_FINI_ARRAY, DT_PREINIT_ARRAY,
                         DT_TEXTREL, DT_REL, DT_RELA, 36 /* DT_RELR */, DT_JMPREL})
            EXPECT_NE(entry.d_tag, tag);
    }
    EXPECT_EQ(soname, "__quevar.so.3.7");
}

TEST_F(Surface, HasNothingWritableOnceLoaded) {
    Elf64_Phdr relro{}, stack{};
    for (const auto &s : segments()) {
        if (s.p_type == PT_GNU_RELRO) relro = s;
        if (s.p_type == PT_GNU_STACK) stack = s;
    }
    EXPECT_EQ(stack.p_type, PT_GNU_STACK) << "without it the stack is executable";
    EXPECT_FALSE(stack.p_flags & PF_X);
    for (const auto &s : segments())
        if (s.p_type == PT_LOAD && s.p_flags & PF_W) {
            EXPECT_FALSE(s.p_flags & PF_X);
            EXPECT_GE(s.p_vaddr, relro.p_vaddr);
            EXPECT_LE(s.p_vaddr + s.p_memsz, relro.p_vaddr + relro.p_memsz);
        }
}

} // namespace
