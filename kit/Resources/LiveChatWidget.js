// Speaks between the chat page and the kit. Runs in the main frame before the page's own scripts.
//
// To the page: CustomEvent "chatfocus" and "chatblur" on window when the chat comes into sight and
// leaves it; LiveChatWidget.focused is the last of them, null before the first.
// From the page: dispatch on window CustomEvent "chatmessage" with detail {id, text, timestamp,
// author: {name}, ...} for a message to the visitor (timestamp: a number in milliseconds or a text
// in seconds since 1970), "chathide" to have the chat hidden, "chatready" once it listens; or call
// LiveChatWidget.message(detail), .hide(), .ready(). The kit tells a page nothing before its first
// event. A detail that is no object, or can't be written as JSON, is ignored; nothing throws.
(function () {
  'use strict';
  if (window.LiveChatWidget) return;

  var focused = null;

  function post(type, detail) {
    try {
      // A copy, so that no getter or function of the page's gets in the way.
      var body = JSON.parse(JSON.stringify(detail));
      body.messageType = type;
      window.webkit.messageHandlers.iosMobileWidget.postMessage(body);
    } catch (error) {
      // Not the page's concern.
    }
  }

  function message(detail) {
    if (detail !== null && typeof detail === 'object' && !Array.isArray(detail))
      post('newMessage', detail);
  }

  function hide() {
    post('hideChatWindow', {});
  }

  function ready() {
    post('ready', {});
  }

  function emit(name, value) {
    focused = value;
    window.dispatchEvent(new CustomEvent(name));
  }

  window.LiveChatWidget_emitFocus = function () {
    emit('chatfocus', true);
  };
  window.LiveChatWidget_emitBlur = function () {
    emit('chatblur', false);
  };

  window.LiveChatWidget = Object.freeze({
    message: message,
    hide: hide,
    ready: ready,
    get focused() {
      return focused;
    },
  });

  window.addEventListener('chatmessage', function (event) {
    message(event.detail);
  });
  window.addEventListener('chathide', hide);
  window.addEventListener('chatready', ready);
})();
