#pragma once

#include <QString>
#include <QVariantHash>

/// What is kept from one run of the host to the next.
struct KeptSettings {
    /// By the text form of their paths; plain values. Those of paths that this version does not
    /// know are carried along.
    QVariantHash values;
    /// Tells this device from all others; empty until there is one.
    QString memberId;
};

/// The file "settings.json" in the state folder. Written whole or not at all; a file that cannot be
/// understood is kept aside as "settings.json.damaged". Not thread-safe.
class SettingsFile {
public:
    /// A longer file is taken for damaged.
    static constexpr qint64 MaxSize = 1024 * 1024;

    /// \a folder is made when it is first written to; with an empty one nothing is kept.
    explicit SettingsFile(const QString &folder);

    /// Empty settings when there is no file, or none that can be understood.
    KeptSettings read();
    /// Returns false, and logs why, when that failed; the file is as it was then.
    bool write(const KeptSettings &settings);

    QString fileName() const { return m_file; }

    /// $XDG_STATE_HOME/vesk, else .local/state/vesk in the home folder, else, for root,
    /// /var/lib/vesk. Empty when there is none of them.
    static QString defaultFolder();

private:
    void keepAside();
    bool writeBytes(const QByteArray &bytes);

    const QString m_folder;
    const QString m_file;
};
