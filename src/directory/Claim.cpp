// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Endpoints.h"

#include <string_view>

namespace directory {

namespace {

/// For phones, on which the code is typed: one column, large fields, light and dark colours.
constexpr char Style[] = R"(:root { color-scheme: light dark; font: 100%/1.45 system-ui, sans-serif;
    --bg: #f4f5f2; --card: #ffffff; --text: #16201d; --muted: #56625d; --edge: #7b857f;
    --accent: #0b6e63; --on-accent: #ffffff; }
@media (prefers-color-scheme: dark) { :root { --bg: #0e1315; --card: #161d20; --text: #ecf1ef;
    --muted: #9fadaa; --edge: #75848a; --accent: #63d4c3; --on-accent: #06211d; } }
* { box-sizing: border-box; }
body { margin: 0; padding: max(1rem, env(safe-area-inset-top)) 1rem 2rem; background: var(--bg);
    color: var(--text); }
main { max-width: 26rem; margin: 0 auto; padding: 1.25rem; border-radius: 1.1rem;
    background: var(--card); }
h1 { margin: 0 0 .3rem; font-size: 1.5rem; line-height: 1.2; }
p { margin: 0 0 1rem; color: var(--muted); overflow-wrap: anywhere; }
p.refused { color: var(--text); font-weight: 600; }
label { display: block; margin: 1rem 0; font-weight: 600; }
input { display: block; width: 100%; height: 3rem; margin-top: .3rem; padding: 0 .9rem;
    border: 1px solid var(--edge); border-radius: .7rem; background: var(--bg); color: inherit;
    font: inherit; font-size: 1.1rem; font-weight: 400; }
input[name=code] { font: 700 1.6rem/1 ui-monospace, monospace; letter-spacing: .2em;
    text-transform: uppercase; }
button { width: 100%; min-height: 3rem; margin-top: .4rem; border: 0; border-radius: 1.5rem;
    background: var(--accent); color: var(--on-accent); font: inherit; font-size: 1.1rem;
    font-weight: 700; }
:focus-visible { outline: 3px solid var(--accent); outline-offset: 2px; }
)";

constexpr char Form[]
    = "<form method=\"post\" action=\"/mydevice\">\n"
      "<label>Code on the device <input name=\"code\" maxlength=\"6\" autocomplete=\"off\" "
      "autocapitalize=\"characters\" spellcheck=\"false\" enterkeyhint=\"next\" required></label>\n"
      "<label>User name <input name=\"username\" maxlength=\"12\" autocomplete=\"username\" "
      "autocapitalize=\"none\" spellcheck=\"false\" enterkeyhint=\"next\" required></label>\n"
      "<label>Password <input name=\"password\" type=\"password\" maxlength=\"12\" "
      "autocomplete=\"current-password\" enterkeyhint=\"go\" required></label>\n"
      "<button>Link the device</button>\n</form>\n";

Answer page(int status, const std::string &message, std::string_view rest)
{
    Answer answer;
    answer.status = status;
    answer.contentType = "text/html; charset=utf-8";
    answer.body = "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">"
                  "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">"
                  "<title>Link a device</title><link rel=\"stylesheet\" href=\"/mydevice.css\">"
                  "</head>\n<body>\n<main>\n<h1>Link a device</h1>\n"
        + std::string(status >= 400 ? "<p class=\"refused\" role=\"alert\">" : "<p>") + message
        + "</p>\n" + std::string(rest) + "</main>\n</body></html>\n";
    answer.headers = {{"Cache-Control", "no-store"},
        {"Content-Security-Policy",
            "default-src 'none'; style-src 'self'; form-action 'self'; base-uri 'none'; "
            "frame-ancestors 'none'"},
        {"Referrer-Policy", "no-referrer"}, {"X-Content-Type-Options", "nosniff"},
        {"X-Frame-Options", "DENY"}};
    return answer;
}

Answer link(const Context &context)
{
    Members &members = context.members();
    Account *account = members.authenticate(context.param("username"), context.param("password"));
    const std::string serial = members.claimed(context.param("code"));
    // Does not say which of the three is wrong: that would help to guess them one by one.
    if (!account || serial.empty())
        return page(403, "The code, the user name or the password is not right.", Form);
    if (!members.join(*account, serial))
        return page(409, "This device is linked to an account already.", Form);
    members.forgetClaimCode(serial);
    return page(
        200, "The device is linked to " + account->userName + ". You can close this page.", {});
}

} // namespace

Answer claimPage(const Context &context)
{
    return context.request().method == "POST"
        ? link(context)
        : page(200, "Enter the code that the device shows, and your account.", Form);
}

Answer claimNotKept()
{
    return page(500, "This cannot be saved now: the disk of the server takes no more.", Form);
}

Answer claimStyle()
{
    Answer answer;
    answer.contentType = "text/css; charset=utf-8";
    answer.body = Style;
    answer.headers.emplace_back("X-Content-Type-Options", "nosniff");
    return answer;
}

} // namespace directory
