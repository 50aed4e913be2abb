#include "tests/support/contract.h"

#include <algorithm>
#include <stdexcept>

#include "tests/support/contract_rows.h"

namespace vt {

namespace {
std::vector<Contract>& registered() {
  static std::vector<Contract> r;
  return r;
}

// The contracts registered in C++ and, from the first use on, the rows of
// tests/*/contracts.txt.
std::vector<Contract>& registry() {
  static const bool loaded = [] {
    load_contract_rows(registered());
    return true;
  }();
  (void)loaded;
  return registered();
}
}  // namespace

ContractRegistrar::ContractRegistrar(const char* name, Contract (*make)(const char* name)) {
  Contract c = make(name);
  c.name = name;
  registered().push_back(std::move(c));
}

const std::vector<Contract>& all_contracts() { return registry(); }

const Contract* find_contract(const std::string& name) {
  for (const Contract& c : registry())
    if (c.name == name) return &c;
  return nullptr;
}

Check null_check(const std::string& param) {
  return Check{"null " + param, {param}, [param](Call& c) { c.null(param); }, vspStsNullPtrErr, true};
}

Check bad(const std::string& param, int64_t value, int expected) {
  return Check{param + "=" + std::to_string(value),
               {param},
               [param, value](Call& c) { c.scalar(param, value); },
               expected,
               false};
}

Check custom(const std::string& label, std::vector<std::string> touches, std::function<void(Call&)> apply,
             int expected) {
  return Check{label, std::move(touches), std::move(apply), expected, false};
}

std::vector<Check> Contract::ordered_checks() const {
  const bool listsNulls = std::any_of(checks.begin(), checks.end(), [](const Check& k) { return k.isNull; });
  if (listsNulls) return checks;
  const ExportInfo* info = find_export(name);
  if (info == nullptr) throw std::runtime_error("contract for unknown export " + name);
  std::vector<Check> all;
  for (const ParamInfo& p : info->params)
    if (p.isPointer && std::find(nullable.begin(), nullable.end(), p.name) == nullable.end())
      all.push_back(null_check(p.name));
  all.insert(all.end(), checks.begin(), checks.end());
  return all;
}

}  // namespace vt
