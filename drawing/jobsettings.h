#pragma once

#include "settingtable.h"

#include <QMap>

/// All settings of a job by their keys: those that were given; the others have the values of the
/// preset, if there is one, and their usual ones.
class JobSettings {
public:
    /// Sets a value of the type that the table states, or the text that people type for it; it is
    /// checked and kept in its canonical form. Throws UsageError, in which `name` (or the setting's
    /// name when it is empty) stands for the setting; an unknown key is an error too.
    ///
    /// A "preset" takes the place of what was given for the preparation, the method, its mode and
    /// its options.
    void set(const QString& key, const QVariant& value, const QString& name = {});

    /// Forgets what was given.
    void reset(const QString& key);

    bool isGiven(const QString& key) const;
    /// Whether it was given or is the preset's.
    bool isFixed(const QString& key) const;
    /// All that was given.
    const QMap<QString, QVariant>& given() const;

    /// The value given, the preset's or the usual one, in this order.
    QVariant value(const QString& key) const;
    double number(const QString& key) const;
    bool isOn(const QString& key) const;
    QString text(const QString& key) const;

    /// The method given, the preset's, or the one that alone reads a setting that was given.
    Method method() const;
    /// Of outlines; black and white also when the tracer's own option says so.
    Mode mode() const;
    QString format() const;

    friend bool operator==(const JobSettings&, const JobSettings&) = default;

private:
    void forgetTracing();
    QVariant presetValue(const QString& key) const;
    QVariant givenOrPreset(const QString& key) const;

    QMap<QString, QVariant> values;
};
