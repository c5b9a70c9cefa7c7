#include "automation/background_writer.h"

namespace tallowin {

namespace {

constexpr unsigned privateFile = 0600;

}  // namespace

void BackgroundWriter::write(const std::filesystem::path& path, std::string bytes) {
  if (!queue_) {
    queue_ = services_.workQueues.make(std::string(label_));
  }
  queue_->after(Duration::zero(),
                [&files = services_.files, &log = services_.log, category = category_, path, bytes = std::move(bytes)] {
                  if (const auto written = files.writeAtomically(path, bytes, privateFile); !written) {
                    log.error(category, "cannot write " + path.string() + ": " + written.error().description);
                  }
                });
}

}  // namespace tallowin
