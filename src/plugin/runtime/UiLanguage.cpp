// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "plugin/runtime/UiLanguage.h"

#include "api/core/Language.h"
#include "api/core/log.h"
#include "api/nodes/CMRootWorker.h"
#include "api/values/VeskValue.h"
#include "api/values/VeskValuePaths.h"

VESK_LOGGER("Host")

UiLanguage::UiLanguage(const QStringList &folders, QObject *parent)
    : QObject(parent)
    , m_folders(folders)
{
    apply();
    m_setting = CMRoot()->subscribe(VeskUILanguagePath(), this, [this](const CMChange &) {
        // A change of language changes the title of the setting, which is announced here as well.
        if (apply())
            CMRoot()->notifyLanguageChanged();
    });
}

UiLanguage::~UiLanguage() = default;

bool UiLanguage::apply() const
{
    const QString language = VeskValue(CMRoot()->getValue(VeskUILanguagePath()).toHash()).string_();
    if (language == Language::current())
        return false;
    if (!Language::setCurrent(language, m_folders))
        VESK_INFO("There are no texts in the language " << language << ".");
    return true;
}
