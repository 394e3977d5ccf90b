import { useEffect, useRef } from "preact/hooks";

import { t } from "../i18n/i18n";
import { closeMenu, menu } from "../model/menu";
import { current } from "../model/navigation";
import { readRow } from "../model/rows";
import { isRecord } from "../rpc/Connection";
import { Icon } from "./icons";
import { RowView } from "./RowView";
import { Problem, Skeleton, useScreen } from "./ScreenView";

/** Rows of a menu; longer ones are no menus. */
const maxRows = 100;

function MenuScreen({ path }: { path: string }) {
    const screen = useScreen(path);
    screen.version.value;
    const count = screen.count.value;
    useEffect(() => screen.show(0, maxRows - 1), [screen]);
    const leave = readRow(isRecord(screen.roles.value.cancel) ? screen.roles.value.cancel : {}).title;
    return (
        <>
            <Problem screen={screen} />
            {count === null && !screen.error.value && <Skeleton rows={2} />}
            {count === 0 && <p class="blank">{t("There is nothing here.")}</p>}
            {count !== null && count > 0 && (
                <ul class="menu-rows" role="list">
                    {Array.from({ length: Math.min(count, maxRows) }, (_, index) => (
                        <li key={index}>
                            <RowView screen={screen} index={index} row={screen.row(index)} isActive inMenu />
                        </li>
                    ))}
                </ul>
            )}
            {leave !== "" && (
                <p class="buttons"><button type="button" onClick={closeMenu}>{leave}</button></p>
            )}
        </>
    );
}

export function MenuDialog() {
    const dialog = useRef<HTMLDialogElement>(null);
    const levels = menu.value;
    const top = levels?.[levels.length - 1];
    const isOpen = top !== undefined;
    useEffect(() => {
        if (isOpen && !dialog.current?.open)
            dialog.current?.showModal();
        else if (!isOpen && dialog.current?.open)
            dialog.current.close();
    }, [isOpen]);
    useEffect(closeMenu, [current.value]);
    return (
        <dialog
            ref={dialog}
            aria-labelledby="menu-title"
            onClose={closeMenu}
            onClick={(event) => {
                if (event.target === dialog.current)
                    closeMenu();
            }}
        >
            {top && (
                <div class="sheet">
                    <div class="sheet-head">
                        {levels!.length > 1 && (
                            <button
                                type="button"
                                class="round"
                                aria-label={t("Back")}
                                onClick={() => (menu.value = levels!.slice(0, -1))}
                            >
                                <Icon shape="back" />
                            </button>
                        )}
                        <h2 id="menu-title">{top.title || t("Menu")}</h2>
                        <button type="button" class="round" aria-label={t("Close")} onClick={closeMenu}>
                            <Icon shape="close" />
                        </button>
                    </div>
                    <MenuScreen key={top.path} path={top.path} />
                </div>
            )}
        </dialog>
    );
}
