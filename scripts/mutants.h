// SPDX-License-Identifier: MIT
// Included before each source that scripts/mutants builds. The file named by KOVA_MUTANT holds the
// number of the broken row, and a byte for each row that a program has reached.
#include <sys/mman.h>

#include <cstdio>
#include <cstdlib>

inline bool kovaMutant(int row) {
  struct Mutants {
    int broken;
    bool reached[9996];
  };
  static Mutants none{};
  static Mutants* const mutants = [] {
    const char* const name = std::getenv("KOVA_MUTANT");
    std::FILE* const file = name ? std::fopen(name, "r+") : nullptr;
    if (!file) return &none;
    const int access = PROT_READ | PROT_WRITE;
    void* const bytes = ::mmap(nullptr, sizeof none, access, MAP_SHARED, ::fileno(file), 0);
    std::fclose(file);
    return bytes == MAP_FAILED ? &none : static_cast<Mutants*>(bytes);
  }();
  mutants->reached[row] = true;
  return mutants->broken == row;
}

// Opens the file before a test changes variables or makes calls fail; there is no row 0.
inline const bool kovaMutantsOpened = kovaMutant(0);
