#include "helpers/nettop/BpfRoute.h"
#include "helpers/nettop/Privileges.h"
#include <iostream>
int main() {
  if (!tidewell::nettop::seclude()) return 1;
  auto m = tidewell::nettop::measureWithBpf();
  if (!m.error.empty()) { std::cerr << m.error << "\n"; return 1; }
  for (auto& r : m.rows) std::cout << r.name << "." << r.process << "," << r.received << "," << r.sent << ", u" << r.user << "\n";
}
