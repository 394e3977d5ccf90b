import { useEffect, useMemo, useState } from "preact/hooks";

import { t } from "../i18n/i18n";
import { Account, type Link } from "../model/accounts";
import { services } from "../model/services";
import { host } from "../model/host";
import type { Row } from "../model/rows";
import { Icon } from "./icons";

/** The accounts that this device is linked to, for the services that have such a thing. */
export function Accounts() {
    return (
        <>
            {services.value?.filter((service) => service.path !== "").map((service) => (
                <AccountPanel key={service.path} service={service} />
            ))}
        </>
    );
}

function AccountPanel({ service }: { service: Row }) {
    const account = useMemo(() => new Account(service.path), [service.path]);
    const isOpen = host.isOpen.value;
    useEffect(() => {
        if (isOpen)
            void account.read();
    }, [account, isOpen]);
    useEffect(() => () => account.close(), [account]);
    const link = account.link.value;
    if (link.is === "none" || link.is === "unknown")
        return null;
    return (
        <section class="card account" aria-label={t("%1 account", service.title)}>
            <h2>{t("%1 account", service.title)}</h2>
            <div aria-live="polite"><Status account={account} link={link} service={service.title} /></div>
            {account.error.value && <p class="bad" role="alert">{account.error.value.message}</p>}
            <Actions account={account} link={link} />
        </section>
    );
}

function Status({ account, link, service }: { account: Account; link: Link; service: string }) {
    switch (link.is) {
        case "failed":
            return (
                <p class="bad">
                    {link.error.message || t("Something went wrong.")}{" "}
                    <button type="button" class="quiet" onClick={() => void account.read()}>{t("Try again")}</button>
                </p>
            );
        case "linked":
            return <p class="good"><Icon shape="link" /> {t("Linked to %1", link.user)}</p>;
        case "claiming":
            return (
                <>
                    {link.message && <p>{link.message}</p>}
                    <p class="code">
                        <span class="unseen">{t("Code: %1", [...link.code].join(" "))}</span>
                        <span aria-hidden="true">{link.code}</span>
                    </p>
                    <p class="quiet-text">{t("Waiting for the code to be entered …")}</p>
                </>
            );
        default:
            return <p>{t("This device is not linked to a %1 account.", service)}</p>;
    }
}

function Actions({ account, link }: { account: Account; link: Link }) {
    const [withPassword, setWithPassword] = useState(false);
    useEffect(() => setWithPassword(false), [link.is]);
    if (link.is === "claiming") {
        return (
            <p class="buttons">
                <button type="button" onClick={() => void account.cancel()}>{t("Cancel")}</button>
            </p>
        );
    }
    if (withPassword)
        return <PasswordForm account={account} link={link} leave={() => setWithPassword(false)} />;
    return (
        <p class="buttons">
            {link.is === "unlinked" && (
                <button
                    type="button"
                    class="filled"
                    aria-disabled={account.isBusy.value}
                    onClick={() => void account.claim()}
                >
                    {t("Link with a code")}
                </button>
            )}
            {link.is !== "failed" && (
                <button type="button" onClick={() => setWithPassword(true)}>
                    {link.is === "linked" ? t("Unlink …") : t("Sign in with a password …")}
                </button>
            )}
        </p>
    );
}

function PasswordForm({ account, link, leave }: { account: Account; link: Link; leave(): void }) {
    const linked = link.is === "linked" ? link.user : "";
    const [user, setUser] = useState(linked);
    const [password, setPassword] = useState("");
    return (
        <form
            class="password"
            onSubmit={(event) => {
                event.preventDefault();
                setPassword("");
                void (linked ? account.drop(user, password) : account.join(user, password));
            }}
        >
            <label>
                {t("User name")}
                <input
                    type="text"
                    autocomplete="username"
                    required
                    value={user}
                    onInput={(event) => setUser(event.currentTarget.value)}
                />
            </label>
            <label>
                {t("Password")}
                <input
                    type="password"
                    autocomplete="current-password"
                    required
                    value={password}
                    onInput={(event) => setPassword(event.currentTarget.value)}
                />
            </label>
            <p class="buttons">
                <button type="submit" class="filled" aria-disabled={account.isBusy.value}>
                    {linked ? t("Unlink") : t("Sign in")}
                </button>
                <button type="button" onClick={leave}>{t("Cancel")}</button>
            </p>
        </form>
    );
}
