#include "programObject.h"

#include <string.h>

/* The file was made with the executable, so it is trusted to be well-formed. */
extern const char programObject[];
__asm__(".pushsection .rodata\n"
        ".balign 16\n"
        ".globl programObject\n"
        "programObject:\n"
        ".incbin \"" PROGRAM_OBJECT "\"\n"
        ".popsection\n");

/* The beginning of the section .BTF.ext, which is followed by records. */
struct TypeUses {
  __u16 magic;
  __u8 version;
  __u8 flags;
  __u32 headerSize;
  __u32 functionsOffset;
  __u32 functionsSize;
  __u32 linesOffset;
  __u32 linesSize;
  __u32 fieldsOffset;
  __u32 fieldsSize;
};

static const Elf64_Ehdr* fileHeader(void) { return (const Elf64_Ehdr*)programObject; }

static const Elf64_Shdr* sectionAt(__u32 index) {
  return (const Elf64_Shdr*)(programObject + fileHeader()->e_shoff) + index;
}

static struct Piece contents(const Elf64_Shdr* section) {
  const struct Piece piece = {programObject + section->sh_offset, (__u32)section->sh_size};
  return piece;
}

static const char* textAt(const Elf64_Shdr* texts, __u32 offset) {
  return programObject + texts->sh_offset + offset;
}

/* Returns null if there is none. */
static const Elf64_Shdr* sectionNamed(const char* name) {
  const Elf64_Shdr* const names = sectionAt(fileHeader()->e_shstrndx);
  for (__u32 index = 1; index < fileHeader()->e_shnum; ++index) {
    if (strcmp(textAt(names, sectionAt(index)->sh_name), name) == 0) {
      return sectionAt(index);
    }
  }
  return 0;
}

static void addReferences(const Elf64_Shdr* instructions, struct ProgramSection* program) {
  for (__u32 index = 1; index < fileHeader()->e_shnum; ++index) {
    const Elf64_Shdr* const section = sectionAt(index);
    if (section->sh_type == SHT_REL && sectionAt(section->sh_info) == instructions) {
      program->references = contents(section);
      program->symbols = sectionAt(section->sh_link);
    }
  }
}

/* The records of a program: their size, then for each program its name, their number, and they. */
static struct Piece recordsOf(const char* program, __u32 offset, __u32 size) {
  struct Piece found = {0, 0};
  const struct TypeUses* const uses = contents(sectionNamed(".BTF.ext")).bytes;
  const char* const types = programTypes().bytes;
  const __u32* const header = (const __u32*)types;
  const char* const texts = types + header[1] + header[4]; /* of struct btf_header */
  const char* position = (const char*)uses + uses->headerSize + offset;
  const char* const end = position + size;
  const __u32 recordSize = *(const __u32*)position;
  for (position += sizeof recordSize; position < end;) {
    const __u32* const head = (const __u32*)position;
    position += 2 * sizeof *head;
    if (strcmp(texts + head[0], program) == 0) {
      found.bytes = position;
      found.size = head[1] * recordSize;
    }
    position += (unsigned long)head[1] * recordSize;
  }
  return found;
}

struct Piece programTypes(void) {
  return contents(sectionNamed(".BTF"));
}

struct ProgramSection programSection(const char* name) {
  struct ProgramSection program = {0};
  const Elf64_Shdr* const section = sectionNamed(name);
  if (section) {
    const struct TypeUses* const uses = contents(sectionNamed(".BTF.ext")).bytes;
    program.instructions = contents(section);
    addReferences(section, &program);
    program.functions = recordsOf(name, uses->functionsOffset, uses->functionsSize);
    program.fields = recordsOf(name, uses->fieldsOffset, uses->fieldsSize);
  }
  return program;
}

const char* symbolName(const struct ProgramSection* program, const Elf64_Rel* reference) {
  const Elf64_Sym* const symbols = contents(program->symbols).bytes;
  return textAt(sectionAt(program->symbols->sh_link),
                symbols[ELF64_R_SYM(reference->r_info)].st_name);
}
