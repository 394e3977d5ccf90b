#include "directory/Endpoints.h"

#include <string_view>

namespace directory {

namespace {

constexpr char style[] = "body { font-family: sans-serif; max-width: 24rem; margin: 3rem auto; }\n"
                         "label { display: block; margin: 1rem 0; }\n"
                         "input { display: block; width: 100%; font-size: 1.2rem; }\n"
                         "button { font-size: 1.2rem; }\n";

constexpr char form[]
    = "<form method=\"post\" action=\"/mydevice\">\n"
      "<label>Code on the device <input name=\"code\" maxlength=\"6\" autocomplete=\"off\" "
      "required></label>\n"
      "<label>User name <input name=\"username\" maxlength=\"12\" autocomplete=\"username\" "
      "required></label>\n"
      "<label>Password <input name=\"password\" type=\"password\" maxlength=\"12\" "
      "autocomplete=\"current-password\" required></label>\n"
      "<button>Link the device</button>\n</form>\n";

Answer page(int status, const std::string &message, std::string_view rest)
{
    Answer answer;
    answer.status = status;
    answer.contentType = "text/html; charset=utf-8";
    answer.body = "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\">"
                  "<title>Link a device</title><link rel=\"stylesheet\" href=\"/mydevice.css\">"
                  "</head>\n<body>\n<h1>Link a device</h1>\n<p>"
        + message + "</p>\n" + std::string(rest) + "</body></html>\n";
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
    // Which of the three it was is nobody's business.
    if (!account || serial.empty())
        return page(403, "The code, the user name or the password is not right.", form);
    if (!members.join(*account, serial).empty())
        return page(409, "This device is linked to an account already.", form);
    members.forgetClaimCode(serial);
    return page(200, "The device is linked to " + account->userName + '.', {});
}

} // namespace

Answer claimPage(const Context &context)
{
    return context.request().method == "POST"
        ? link(context)
        : page(200, "Enter the code that the device shows, and your account.", form);
}

Answer claimNotKept()
{
    return page(500, "This cannot be saved now: the disk of the server takes no more.", form);
}

Answer claimStyle()
{
    Answer answer;
    answer.contentType = "text/css; charset=utf-8";
    answer.body = style;
    answer.headers.emplace_back("X-Content-Type-Options", "nosniff");
    return answer;
}

} // namespace directory
