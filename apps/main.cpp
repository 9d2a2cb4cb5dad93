#include <exception>
#include <new>
#include <string>
#include <vector>

#include "apps/console.h"
#include "apps/program.h"
#include "tooldb/error.h"

namespace {

int answer(const std::string& message) {
  tooldb::Console().Error(message);
  return tooldb::kFailed;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return tooldb::run_program(std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc));
  } catch (const tdbError& error) {
    return answer(error.message);
  } catch (const std::bad_alloc&) {
    return answer("not enough memory");
  } catch (const std::exception& error) {
    return answer(error.what());
  } catch (...) {
    return answer("unknown failure");
  }
}
