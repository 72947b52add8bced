// SPDX-License-Identifier: MIT
#pragma once

#include "fakes/startedhome.h"

#include <memory>

#include <QObject>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

/// The real managers of the floor dialog, over stand-ins that a test fills. The screens' tests find it under
/// the name "floors".
class FloorScreens : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QObject* ctrl READ ctrl)
    Q_PROPERTY(QObject* model READ model)

public:
    using QObject::QObject;

    /// Starts with the project "shown". `stored` and `reset` are lists of floors, each with "name" and, under
    /// "models", lists of names by model; `models` is a list of models, each with "guid", "name" and
    /// "floors".
    Q_INVOKABLE void start(const QVariantList& stored, const QVariantList& reset, const QVariantList& models);
    Q_INVOKABLE void end();

    /// What is stored: a line for each floor, as "2F a:1,2 b:3".
    Q_INVOKABLE QStringList stored() const;
    /// The rows of the dialog, with a star behind those of selected ones.
    Q_INVOKABLE QStringList rows() const;
    /// What is matched to the current row, "model floor" of each.
    Q_INVOKABLE QStringList matched() const;

    [[nodiscard]] QObject* ctrl() const;
    [[nodiscard]] QObject* model() const;

private:
    std::unique_ptr<Fakes::Surroundings> m_surroundings;
};
