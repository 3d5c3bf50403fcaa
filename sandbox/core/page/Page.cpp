#include "sandbox/core/page/Page.h"

#include "sandbox/core/Embedded.h"
#include "sandbox/core/page/ArrivalsHtml.h"
#include "sandbox/core/page/Html.h"
#include "sandbox/core/page/Words.h"

namespace zuvi::sandbox {
namespace {

constexpr std::string_view start = R"(<!doctype html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>Sandbox: what arrived</title>
)";

// Filled in by its script; the snapshot of a run has none.
constexpr std::string_view operatorBox = R"(<section class="operator"><h2>Chat</h2>
<form id="operator">
<label for="visitor">Visitor</label><select id="visitor" disabled></select>
<pre id="conversation" tabindex="0"></pre>
<label for="line">Answer</label><input id="line" autocomplete="off" disabled>
<button id="say" disabled>Send</button>
<p id="operator-status" role="status"></p>
</form></section>
)";

std::string bodyHtml(const Arrivals& arrivals, std::string_view files, std::string_view status,
                     std::string_view afterHeader) {
  std::string out = "<body>\n<header class=\"top\"><h1>Sandbox</h1>";
  out += html("<p class=\"counts\">%, %</p>",
              countWords(arrivals.identities.size(), "identity", "identities"),
              countWords(arrivals.events.size(), "event", "events"));
  out += status;
  out += "</header>\n";
  out += afterHeader;
  out += "<main data-key=\"main\"><section class=\"identities\" data-key=\"identities\">\n" +
         identitiesHtml(arrivals.identities, files) +
         "</section>\n<aside data-key=\"events\"><h2>Events</h2>\n" + eventsHtml(arrivals.events) +
         "</aside></main>\n</body>\n</html>\n";
  return out;
}

std::string galleryHtml(const std::vector<GalleryPicture>& gallery) {
  if (gallery.empty()) return {};
  std::string out = "<section class=\"gallery\"><h2>Screens of the run</h2><div>\n";
  for (const GalleryPicture& picture : gallery)
    out += html(R"(<figure><a href="%"><img src="%" alt="%" loading="lazy"></a>)", picture.link,
                picture.link, picture.caption) +
           html("<figcaption>%</figcaption></figure>\n", picture.caption);
  return out + "</div></section>\n";
}

} // namespace

std::string livePage(const Arrivals& arrivals) {
  return std::string(start) +
         "<link rel=\"icon\" href=\"/merchant.png\">\n"
         "<link rel=\"stylesheet\" href=\"/page.css\">\n"
         "<script src=\"/page.js\" defer></script>\n"
         "<script src=\"/operator.js\" defer></script>\n</head>\n" +
         bodyHtml(arrivals, "/files/",
                  "<p class=\"status\" id=\"status\" role=\"status\" hidden></p>", operatorBox);
}

std::string snapshotPage(const Arrivals& arrivals, std::string_view files,
                         const std::vector<GalleryPicture>& gallery) {
  std::string out(start);
  out += "<meta http-equiv=\"Content-Security-Policy\" content=\"script-src 'none'; "
         "object-src 'none'; base-uri 'none'; form-action 'none'\">\n<style>\n";
  out += embeddedFile("page.css");
  out += "</style>\n</head>\n";
  return out + bodyHtml(arrivals, files, {}, galleryHtml(gallery));
}

} // namespace zuvi::sandbox
