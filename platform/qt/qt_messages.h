#pragma once

namespace tallowin {

/// Sends what Qt itself has to say to the system log, not to the user's terminal. Fatal messages go to both.
void sendQtMessagesToLog();

}  // namespace tallowin
