#include "app/program_version.h"

namespace tallowin {

ProgramVersion programVersion() {
  return {TALLOWIN_VERSION, TALLOWIN_BUILD};
}

}  // namespace tallowin
