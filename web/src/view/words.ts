// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

import { t } from "../i18n/i18n";
import { RpcError } from "../rpc/Connection";

/** The error's text for the reader. */
export function errorText(error: RpcError): string {
    if (error.code === RpcError.lost)
        return t("There is no connection to the host, so nothing happens.");
    if (error.code === RpcError.notAllowed)
        return t("Only an owner of this host may do that.");
    return error.message || t("Something went wrong.");
}
