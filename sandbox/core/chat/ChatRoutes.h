#pragma once

#include "sandbox/core/chat/ChatRoom.h"
#include "sandbox/core/http/Router.h"

#include <functional>
#include <string>

namespace zuvi::sandbox {

/// The chat service: where its page is, the page, and what the page and the operator say.
/// `address` is that of this server, without a slash at its end. The routes hold a reference to
/// the room.
void addChatRoutes(Router& router, ChatRoom& room, std::function<std::string()> address);

} // namespace zuvi::sandbox
