/* The compiled programs: the compiler's object file, which is a part of the executable. */
#pragma once

#include <elf.h>
#include <linux/bpf.h>

/* A part of the object file. */
struct Piece {
  const void* bytes;
  __u32 size;
};

/* A program, which is a section of the object file. */
struct ProgramSection {
  struct Piece instructions; /* struct bpf_insn */
  struct Piece references;   /* Elf64_Rel: where it names symbols */
  struct Piece functions;    /* struct bpf_func_info */
  struct Piece fields;       /* struct bpf_core_relo: where it uses the kernel's types */
  const Elf64_Shdr* symbols; /* of the references */
};

/* Returns the types that the programs use, in BTF. */
struct Piece programTypes(void);

/* Returns a program. Its pieces are empty if there is no such section. */
struct ProgramSection programSection(const char* name);

/* Returns the name of the symbol that a program refers to. */
const char* symbolName(const struct ProgramSection* program, const Elf64_Rel* reference);
