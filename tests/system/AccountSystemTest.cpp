// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "api/web/VeskJson.h"
#include "tests/support/TestAuthority.h"
#include "tests/support/Text.h"
#include "tests/system/Product.h"

#include <QDirIterator>
#include <QFile>

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

const char userName[] = "quokka";
const char password[] = "Zwiebel77xy";
const char email[] = "quokka@example.org";

std::string written(const QVariant &value)
{
    return VeskJson::write(value).toStdString();
}

/// The account that a write returns, or its error.
struct Result {
    QVariantHash account;
    QString message;
    QString name;
    QString title;

    std::string summary() const
    {
        return (name.isEmpty() ? text("done") : name + text(": ") + message).toStdString();
    }
};

/// A product whose host reaches the directory over TLS.
DirectoryTls goodTls()
{
    static TestAuthority authority("Account tests");
    static const TestAuthority::Certificate certificate = authority.issue("opml.radiotime.com");
    return {certificate.certificateFile, certificate.keyFile, authority.file()};
}

/// One operation with the values of a form, in its order.
using Fields = QList<QPair<const char *, const char *>>;

class AccountSystem : public testing::Test {
protected:
    /// In the host's arguments "%1" is the test's own folder.
    explicit AccountSystem(QStringList hostArguments = {})
        : product(hostArguments.replaceInStrings(text("%1"), folder.path()), goodTls())
    {
    }
    void SetUp() override
    {
        ASSERT_TRUE(product.isUp());
        serial = product.serial();
        ASSERT_EQ(serial.size(), 32);
    }

    void noteError(const QVariantHash &answer)
    {
        if (answer.contains(text("error")))
            errors += VeskJson::write(answer);
    }
    QVariantHash write(const QVariant &value, const char *role = "value")
    {
        const QVariantHash answer = product.rpc(text("setData"),
            {{text("path"), text("TuneIn:account")}, {text("role"), text(role)},
                {text("value"), value}});
        noteError(answer);
        return answer;
    }
    static Result resultOf(const QVariantHash &answer, const QVariant &value)
    {
        const QVariantHash error = answer.value(text("error")).toHash();
        const QVariantHash data = error.value(text("data")).toHash();
        return {value.toHash().value(text("tuneInAccount")).toHash(),
            error.value(text("message")).toString(), data.value(text("name")).toString(),
            data.value(text("title")).toString()};
    }
    Result call(const char *operation, const Fields &fields = {})
    {
        QVariantHash account {{text("operation"), text(operation)}};
        for (const auto &field : fields)
            account.insert(text(field.first), text(field.second));
        const QVariantHash answer
            = write(QVariantHash {{text("type"), 115}, {text("tuneInAccount"), account}});
        return resultOf(answer, answer.value(text("result")).toHash().value(text("value")));
    }
    /// The outcome of a read of the account.
    Result status(bool poll = false)
    {
        const QVariantHash answer = product.rpc(text("getData"),
            {{text("path"), text("TuneIn:account")}, {text("roles"), QStringList {text("value")}},
                {text("poll"), poll}});
        noteError(answer);
        return resultOf(
            answer, answer.value(text("result")).toHash().value(text("values")).toList().value(0));
    }
    Result join(const char *name = userName, const char *secret = password)
    {
        return call("join", {{"userName", name}, {"password", secret}});
    }
    Result drop(const char *name = userName, const char *secret = password)
    {
        return call("drop", {{"userName", name}, {"password", secret}});
    }
    Result create(const char *name = userName, const char *secret = password,
        const char *address = email, const char *postalCode = "20095")
    {
        return call("create",
            {{"userName", name}, {"password", secret}, {"email", address},
                {"postalCode", postalCode}});
    }
    std::vector<std::string> requests()
    {
        std::vector<std::string> all;
        const QStringList fresh = product.newRequests();
        for (const QString &each : fresh)
            all.push_back(each.toStdString());
        return all;
    }
    /// The request line of an operation, whose own items are \a items.
    std::string line(const QString &items)
    {
        return (text("POST /Account.ashx?render=json&partnerId=test&c=") + items).toStdString();
    }

    QTemporaryDir folder;
    Product product;
    QString serial;
    QByteArray errors; ///< all error responses of the host
};

TEST_F(AccountSystem, EveryOperationSendsExactlyItsItems)
{
    requests();
    const QString withSerial = text("&serial=") + serial;
    const QString user = text("&username=quokka&password=***");

    const Result claimed = call("claim");
    EXPECT_EQ(claimed.summary(), "done");
    EXPECT_THAT(requests(), ElementsAre(line(text("claim") + withSerial)));
    EXPECT_EQ(claimed.account.value(text("operation")).toInt(), 8);
    const QString code = claimed.account.value(text("claimKey")).toString();
    EXPECT_EQ(code.size(), 6);
    EXPECT_THAT(claimed.account.value(text("claimMessage")).toString().toStdString(),
        HasSubstr(code.toStdString()));
    EXPECT_EQ(claimed.account.size(), 3);

    const Result created = create();
    EXPECT_EQ(created.summary(), "done");
    EXPECT_THAT(requests(),
        ElementsAre(
            line(text("create") + user + text("&email=quokka%40example.org&postalCode=20095"))));
    EXPECT_EQ(written(created.account), "{\"operation\":2}");

    EXPECT_EQ(call("create",
                  {{"userName", "wombat"}, {"password", "p&=s +%1"}, {"email", "w@example.org"},
                      {"city", "Bad Aibling"}, {"countryId", "n88"}})
                  .summary(),
        "done");
    EXPECT_THAT(requests(),
        ElementsAre(line(text("create&username=wombat&password=***&email=w%40example.org&"
                              "city=Bad%20Aibling&countryId=n88"))));
    EXPECT_EQ(
        call("create", {{"userName", "dingo"}, {"password", "four"}, {"email", "d@example.org"}})
            .name,
        text("VeskError:3"));
    EXPECT_THAT(requests(),
        ElementsAre(line(text("create&username=dingo&password=***&email=d%40example.org&city=&"
                              "countryId="))));

    const Result authenticated = call("auth", {{"userName", userName}, {"password", password}});
    EXPECT_EQ(authenticated.summary(), "done");
    EXPECT_THAT(requests(), ElementsAre(line(text("auth") + user)));
    EXPECT_EQ(authenticated.account.value(text("userName")).toString(), text(userName));
    EXPECT_EQ(authenticated.account.value(text("email")).toString(), text(email));
    EXPECT_FALSE(authenticated.account.value(text("accountId")).toString().isEmpty());
    EXPECT_EQ(authenticated.account.value(text("sessionId")).toString().size(), 24);
    EXPECT_FALSE(authenticated.account.contains(text("password")));
    EXPECT_EQ(call("auth", {{"userName", "wombat"}, {"password", "p&=s +%1"}}).summary(), "done");

    requests();
    const Result joined = join();
    EXPECT_EQ(written(joined.account), "{\"operation\":3}");
    EXPECT_THAT(requests(), ElementsAre(line(text("join") + user + withSerial)));

    const Result queried = call("query");
    EXPECT_EQ(queried.account.value(text("operation")).toInt(), 5);
    EXPECT_EQ(queried.account.value(text("userName")).toString(), text(userName));
    EXPECT_THAT(requests(), ElementsAre(line(text("query") + withSerial)));
    EXPECT_EQ(written(status().account), written(queried.account));
    EXPECT_THAT(requests(), ElementsAre(line(text("query") + withSerial)));

    EXPECT_EQ(written(drop().account), "{\"operation\":4}");
    EXPECT_THAT(requests(), ElementsAre(line(text("drop") + user + withSerial)));

    EXPECT_EQ(written(call("remind", {{"email", email}}).account), "{\"operation\":6}");
    EXPECT_THAT(requests(), ElementsAre(line(text("remind&email=quokka%40example.org"))));

    EXPECT_EQ(written(call("reset", {{"email", email}}).account), "{\"operation\":7}");
    EXPECT_THAT(requests(), ElementsAre(line(text("reset&email=quokka%40example.org"))));
    EXPECT_EQ(call("reset", {{"userName", userName}, {"password", password}}).summary(), "done");
    EXPECT_THAT(requests(), ElementsAre(line(text("reset&username=quokka"))));
    EXPECT_EQ(call("reset").name, text("VeskError:6"));
    EXPECT_THAT(requests(), ElementsAre(line(text("reset"))));
}

TEST_F(AccountSystem, AReadAnswersOnlyTypeAndValue)
{
    ASSERT_EQ(create().summary(), "done");
    ASSERT_EQ(join().summary(), "done");
    const QVariantHash answer = product.rpc(text("getData"),
        {{text("path"), text("TuneIn:account")},
            {text("roles"), QStringList {text("type"), text("title"), text("value")}}});
    const QVariantList values
        = answer.value(text("result")).toHash().value(text("values")).toList();
    ASSERT_EQ(values.size(), 3);
    EXPECT_EQ(values.value(0).toInt(), 4);
    EXPECT_TRUE(values.value(1).isNull());
    EXPECT_EQ(written(values.value(2)),
        written(QVariantHash {{text("type"), 115},
            {text("tuneInAccount"),
                QVariantHash {{text("operation"), 5}, {text("userName"), text(userName)}}}}));
}

TEST_F(AccountSystem, EveryFaultHasItsNameAndMessage)
{
    const char invalidEmail[]
        = "VeskError:1: The given email address is of invalid form (empty or incorrect).";
    const char invalid[] = "VeskError:6: A validation error occurred.";
    EXPECT_EQ(create(userName, password, "no address").summary(), invalidEmail);
    EXPECT_EQ(call("remind", {{"email", "nobody@example.org"}}).summary(), invalidEmail);
    EXPECT_EQ(create(userName, "abc").summary(),
        "VeskError:2: The given password is of invalid form (empty or incorrect).");
    EXPECT_EQ(create(userName, password, email, "").summary(),
        "VeskError:3: The given postalCode or city/country combination is invalid.");
    EXPECT_EQ(create("no name!").summary(), invalid);
    EXPECT_EQ(call("reset", {{"email", "nobody@example.org"}}).summary(), invalid);
    ASSERT_EQ(create().summary(), "done");
    EXPECT_EQ(create().summary(), "VeskError:4: The requested account name is already taken.");
    EXPECT_EQ(
        create("wombat").summary(), "VeskError:5: The requested email is already registered.");
    EXPECT_EQ(status().summary(), "VeskError:7: No associated account");
    EXPECT_EQ(call("query").summary(), "VeskError:7: No associated account");
    EXPECT_EQ(drop().summary(), "VeskError:7: No associated account");
    ASSERT_EQ(join().summary(), "done");
    EXPECT_EQ(join().summary(), "VeskError:8: Account already associated.");

    EXPECT_EQ(join(userName, "wrong").summary(),
        "VeskError:0: Login failed. Please enter a valid username and password.");
    EXPECT_EQ(drop(userName, "wrong").summary(), "VeskError:0: Access forbidden.");
    EXPECT_EQ(call("auth", {{"userName", userName}, {"password", "wrong"}}).summary(),
        "VeskError:0: TuneIn request failed.");
    EXPECT_EQ(status().account.value(text("userName")).toString(), text(userName));
}

TEST_F(AccountSystem, AFaultHasTheSameTextInEveryOperation)
{
    struct Case {
        const char *fault;
        const char *summary;
    };
    const Case cases[] = {
        {"400,validation.email",
            "VeskError:1: The given email address is of invalid form (empty or incorrect)."},
        {"400,validation.password",
            "VeskError:2: The given password is of invalid form (empty or incorrect)."},
        {"400,validation.location",
            "VeskError:3: The given postalCode or city/country combination is invalid."},
        {"400,validation.userNameExists",
            "VeskError:4: The requested account name is already taken."},
        {"400,validation.emailExists", "VeskError:5: The requested email is already registered."},
        {"403,validation.error", "VeskError:6: A validation error occurred."},
        {"400,validation.deviceNotAssociated", "VeskError:7: No associated account"},
        {"400,validation.deviceExists", "VeskError:8: Account already associated."},
        {"400,validation.unheardOf", "VeskError:0: TuneIn request failed."},
        {"500", "VeskError:0: TuneIn request failed."},
    };
    for (const Case &each : cases) {
        product.setFault(QByteArray("head-fault@Account.ashx:") + each.fault);
        for (const char *operation :
            {"auth", "create", "join", "drop", "query", "remind", "reset", "claim"}) {
            const Result result = call(operation, {{"userName", userName}, {"password", password}});
            EXPECT_EQ(result.summary(), each.summary) << operation << ' ' << each.fault;
            EXPECT_EQ(result.title, text("Error"));
        }
        EXPECT_EQ(status().summary(), each.summary) << each.fault;
        product.clearFaults();
    }
    const char *spoilt[][2] = {{"empty", "VeskError: Invalid data received."},
        {"reset", "VeskError: Invalid data received."},
        {"http-status:500", "VeskError: Invalid data returned."},
        {"malformed", "VeskError: Invalid data returned."}};
    for (const auto &each : spoilt) {
        const QList<QByteArray> parts = QByteArray(each[0]).split(':');
        product.setFault(
            parts.value(0) + "@Account.ashx" + (parts.size() > 1 ? ':' + parts.value(1) : ""));
        EXPECT_EQ(join().summary(), each[1]) << each[0];
        EXPECT_EQ(status().summary(), each[1]) << each[0];
        product.clearFaults();
    }
    EXPECT_EQ(status().name, text("VeskError:7"));
}

TEST_F(AccountSystem, MalformedAnswersAreErrors)
{
    QFile answer(folder.filePath(text("answer.json")));
    const auto answerWith = [&](const char *body) {
        ASSERT_TRUE(answer.open(QIODevice::WriteOnly));
        answer.write(QByteArray("{\"head\":{\"status\":\"200\"},\"body\":[") + body + "]}");
        answer.close();
        product.setFault("body@Account.ashx:" + answer.fileName().toUtf8() + "*1");
    };
    const char outline[] = "{\"element\":\"outline\",\"text\":\"a\"}";
    const QByteArray two = QByteArray(outline) + ',' + outline;
    const Fields user {{"userName", userName}, {"password", password}};
    for (const char *body : {"", two.constData()}) {
        answerWith(body);
        EXPECT_EQ(call("auth", user).summary(), "VeskError: Invalid response!") << body;
        answerWith(body);
        EXPECT_EQ(status().summary(), "VeskError: Invalid response!") << body;
        answerWith(body);
        EXPECT_EQ(call("claim").summary(), "VeskError: Invalid response.") << body;
    }
    answerWith("{\"element\":\"station\",\"text\":\"a\"}");
    EXPECT_EQ(call("claim").summary(), "VeskError: Invalid response.");
}

TEST_F(AccountSystem, InvalidOperationsAreNotSent)
{
    requests();
    const char unusable[] = "VeskError: Invalid password or user name.";
    EXPECT_EQ(join(userName, "").summary(), unusable);
    EXPECT_EQ(join("", password).summary(), unusable);
    EXPECT_EQ(call("reset", {{"userName", userName}}).summary(), unusable);
    EXPECT_EQ(call("no such operation").summary(), "VeskError: Unknown method");
    const auto refused = [this](const QVariant &value, const char *role = "value") {
        return resultOf(write(value, role), {}).summary();
    };
    EXPECT_EQ(refused(text("claim")), "VeskError: Invalid value type.");
    EXPECT_EQ(refused(QVariantHash {{text("type"), 115}}), "VeskError: Unknown method");
    EXPECT_EQ(
        refused(QVariantHash {{text("string_"), text("claim")}}), "VeskError: Invalid value type.");
    const QVariantHash untyped {
        {text("tuneInAccount"), QVariantHash {{text("operation"), text("query")}}}};
    EXPECT_EQ(refused(untyped), "VeskError: Invalid value type.");
    EXPECT_THAT(refused(QVariant(), "title"), HasSubstr("VeskError"));
    EXPECT_THAT(requests(), IsEmpty());
}

TEST_F(AccountSystem, AClaimCodeLinksTheDevice)
{
    ASSERT_EQ(create().summary(), "done");
    EXPECT_EQ(status().name, text("VeskError:7"));
    const QByteArray code = call("claim").account.value(text("claimKey")).toString().toUtf8();
    ASSERT_EQ(code.size(), 6);
    const QByteArray wrong = product.submitToDirectory(
        text("/mydevice"), "code=" + code + "&username=quokka&password=wrong");
    EXPECT_THAT(wrong.toStdString(), HasSubstr("is not right"));
    EXPECT_EQ(status().name, text("VeskError:7"));
    const QByteArray linked = product.submitToDirectory(
        text("/mydevice"), "code=" + code.toLower() + "&username=quokka&password=" + password);
    EXPECT_THAT(linked.toStdString(), HasSubstr("The device is linked to quokka."));
    EXPECT_EQ(status().account.value(text("userName")).toString(), text(userName));
    EXPECT_EQ(product.ctl({text("account"), text("status")}).out, text("quokka\n"));
}

TEST_F(AccountSystem, VeskctlLinksAndUnlinks)
{
    const auto account = [this](const QStringList &arguments, const char *input = "") {
        const Outcome outcome = product.ctl(QStringList {text("account")} + arguments, input);
        EXPECT_THAT((outcome.out + outcome.err).toStdString(), Not(HasSubstr(password)));
        return outcome;
    };
    const QByteArray secret = QByteArray(password) + '\n';
    EXPECT_EQ(account({text("status")}).out, text("not linked\n"));
    EXPECT_EQ(account({text("create"), text(userName), text("--email"), text(email),
                          text("--postal-code"), text("20095")},
                  secret)
                  .code,
        0);
    EXPECT_EQ(account({text("join"), text(userName)}, "wrong\n").code, 1);
    EXPECT_EQ(account({text("join"), text(userName)}, secret).out, text("quokka: linked\n"));
    EXPECT_EQ(account({text("status")}).out, text("quokka\n"));
    EXPECT_EQ(account({text("drop"), text(userName)}, secret).code, 0);
    EXPECT_EQ(account({text("status")}).out, text("not linked\n"));
    EXPECT_THAT(account({text("claim")}).out.toStdString(), HasSubstr("/mydevice"));
}

TEST_F(AccountSystem, ALinkedDeviceShowsTheAccountsFavorites)
{
    const auto favorite = [&](const char *what, int row) {
        EXPECT_EQ(
            product.ctl({text("favorite"), text(what), text("search:trial"), QString::number(row)})
                .code,
            0);
    };
    const auto favorites = [this] {
        std::vector<std::string> titles;
        const QVariantList rows
            = product.rows(text("TuneIn:browse/uri/Browse.ashx?c=presets"), {text("title")});
        for (const QVariant &row : rows)
            titles.push_back(row.toList().value(0).toString().toStdString());
        return titles;
    };
    const auto devices = ElementsAre(HasSubstr("Trial 01"));
    favorite("add", 0);
    EXPECT_THAT(favorites(), devices);
    ASSERT_EQ(create().summary(), "done");
    ASSERT_EQ(join().summary(), "done");
    EXPECT_THAT(favorites(), ElementsAre("No stations or shows available"));
    favorite("add", 2);
    favorite("add", 1);
    const auto accounts = ElementsAre(HasSubstr("Trial 03"), HasSubstr("Trial 02"));
    EXPECT_THAT(favorites(), accounts);
    ASSERT_EQ(drop().summary(), "done");
    EXPECT_THAT(favorites(), devices);
    ASSERT_EQ(join().summary(), "done");
    EXPECT_THAT(favorites(), accounts);
}

/// The contents of all files below a folder.
QByteArray filesBelow(const QString &folder)
{
    QByteArray all;
    QDirIterator files(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        all += file.fileName().toUtf8() + '\n' + file.readAll();
    }
    return all;
}

class AccountSecrets : public AccountSystem {
protected:
    AccountSecrets()
        : AccountSystem(
            {text("--log-level"), text("trace"), text("--log-file"), text("%1/host.log")})
    {
    }
};

TEST_F(AccountSecrets, StayOutOfLogsErrorsAndFiles)
{
    const char odd[] = "p&=s +%1z";
    const char wrong[] = "Wr0ngW0rd";
    ASSERT_EQ(create().summary(), "done");
    ASSERT_EQ(create("wombat", odd, "w@example.org").summary(), "done");
    const QByteArray session = call("auth", {{"userName", userName}, {"password", password}})
                                   .account.value(text("sessionId"))
                                   .toString()
                                   .toUtf8();
    ASSERT_EQ(session.size(), 24);
    ASSERT_EQ(join().summary(), "done");
    ASSERT_EQ(status().summary(), "done");
    ASSERT_EQ(drop().summary(), "done");
    ASSERT_EQ(join("wombat", odd).summary(), "done");
    ASSERT_EQ(drop("wombat", odd).summary(), "done");
    ASSERT_EQ(call("claim").summary(), "done");
    EXPECT_NE(join(userName, wrong).summary(), "done");
    EXPECT_NE(drop(userName, wrong).summary(), "done");
    EXPECT_NE(call("auth", {{"userName", userName}, {"password", wrong}}).summary(), "done");
    EXPECT_NE(join("", wrong).summary(), "done");
    const Fields all {{"userName", userName}, {"password", password}, {"email", email}};
    for (const char *operation : {"remind", "reset", "query", "claim", "no such operation"})
        call(operation, all);
    // A text in place of an account, and a value with a password beside its text.
    write(text(password));
    write(QVariantHash {
        {text("type"), 4}, {text("string_"), text("a")}, {text("password"), text(password)}});
    for (const char *fault : {"empty", "reset", "malformed", "http-status:500",
             "head-fault:400,validation.error", "redirect-chain:1", "redirect-loop"}) {
        const QByteArray name = QByteArray(fault).replace(":", "@Account.ashx:");
        product.setFault(name.contains('@') ? name : name + "@Account.ashx");
        join();
        call("auth", all);
        product.clearFaults();
    }
    ASSERT_EQ(product.stopHost(), 0);

    EXPECT_GE(errors.count("\"error\""), 10);
    const QByteArray log = filesBelow(folder.path());
    EXPECT_TRUE(log.contains("Enter TuneInAccountNode::processResponseAuthenticate: response: "));
    EXPECT_TRUE(log.contains("TuneInAccountNode::setDataRequest: value: '"));
    EXPECT_TRUE(log.contains("***"));
    const QByteArray asked = product.requestLog().join(QLatin1Char('\n')).toUtf8();
    EXPECT_TRUE(asked.contains("c=auth&username=quokka&password=***"));
    const QByteArray kept = filesBelow(product.stateDir());
    EXPECT_TRUE(kept.contains(serial.toUtf8()));
    for (const QByteArray &secret : {QByteArray(password), QByteArray(odd), QByteArray("p%26%3Ds"),
             QByteArray("p&=s"), QByteArray(wrong), session}) {
        SCOPED_TRACE(secret.toStdString());
        EXPECT_EQ(log.mid(qMax(0, log.indexOf(secret) - 300), log.contains(secret) ? 400 : 0),
            QByteArray());
        EXPECT_FALSE(asked.contains(secret));
        EXPECT_FALSE(kept.contains(secret));
        EXPECT_FALSE(errors.contains(secret));
    }
    for (const QByteArray &personal : {QByteArray(userName), QByteArray(email)})
        EXPECT_FALSE(kept.contains(personal)) << personal.toStdString();
}

/// With the log level of normal operation.
class AccountLog : public AccountSystem {
protected:
    AccountLog()
        : AccountSystem(
            {text("--log-level"), text("info"), text("--log-file"), text("%1/host.log")})
    {
    }
    int errorLines() { return filesBelow(folder.path()).count(" ERROR "); }
};

TEST_F(AccountLog, APolledFaultIsNotLoggedAsAnError)
{
    ASSERT_EQ(status().name, text("VeskError:7"));
    ASSERT_EQ(product.stopHost(), 0);
    const int once = errorLines();
    EXPECT_GT(once, 0);
    ASSERT_TRUE(product.startHost());
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(status(true).name, text("VeskError:7"));
    ASSERT_EQ(status().name, text("VeskError:7"));
    ASSERT_EQ(product.stopHost(), 0);
    EXPECT_EQ(errorLines(), 2 * once);
}

TEST_F(AccountSecrets, ATextInPlaceOfAnAccountStaysOutOfItsError)
{
    const QVariantHash value {{text("type"), 115}, {text("tuneInAccount"), text(password)}};
    EXPECT_EQ(resultOf(write(value), {}).summary(), "VeskError: Unknown method");
    ASSERT_EQ(product.stopHost(), 0);
    EXPECT_FALSE(filesBelow(folder.path()).contains(password));
    EXPECT_FALSE(errors.contains(password));
}

} // namespace
