// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { t } from "../i18n/i18n";
import { devicesPath, openCrumb, servicesPath, settingsPath, trail, type Crumb } from "../model/navigation";
import { homePath, searchAt, serviceOf, services } from "../model/services";

/** The trail, with the home screen added in front if it began elsewhere. */
function crumbs(): Crumb[] {
    const way = [...trail.value];
    const first = way[0]!.path;
    const root = serviceOf(first);
    if (root && root.path !== first && root.path !== homePath.value)
        way.unshift({ path: root.path, title: root.title });
    if (homePath.value !== way[0]!.path && way[0]!.path !== servicesPath)
        way.unshift({ path: homePath.value, title: "" });
    return way;
}

function titleOf(crumb: Crumb): string {
    const searched = searchAt(crumb.path);
    if (searched)
        return t("Results for “%1”", searched.text);
    if (crumb.path === servicesPath)
        return t("Services");
    if (crumb.path === settingsPath)
        return t("Settings");
    if (crumb.path === devicesPath)
        return t("Devices");
    const service = services.value?.find((row) => row.path === crumb.path);
    return service?.title || crumb.title || t("Untitled");
}

export function Breadcrumbs() {
    const way = crumbs();
    if (way.length < 2)
        return null;
    return (
        <nav class="crumbs" aria-label={t("You are here")}>
            <ol>
                {way.slice(0, -1).map((crumb, index) => (
                    <li key={index}>
                        <a
                            href={"#" + crumb.path}
                            dir="auto"
                            onClick={(event) => {
                                event.preventDefault();
                                openCrumb(crumb.path, titleOf(crumb));
                            }}
                        >
                            {titleOf(crumb)}
                        </a>
                    </li>
                ))}
            </ol>
        </nav>
    );
}
