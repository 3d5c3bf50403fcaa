#pragma once

namespace zuvi {

/// Whether the chat is on the screen.
enum class ChatState { Presented, Hidden };

} // namespace zuvi
