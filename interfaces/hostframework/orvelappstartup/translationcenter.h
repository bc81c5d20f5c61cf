#ifndef TRANSLATIONCENTER_H
#define TRANSLATIONCENTER_H

#include "orvelappstartup/orvelappstartupglobal.h"

#include <QString>

/// Installs the translations of libraries under the library's name. May be used before there is an
/// application object and after it is gone: names are remembered, and translations installed
/// whenever an application object is made.
///
/// Libraries call Instance, Register and Unregister by their symbols: a host that defines a class
/// of its own with these three needs no table of virtual functions.
class ORVELAPPSTARTUP_EXPORT TranslationCenter
{
public:
    virtual ~TranslationCenter();

    static TranslationCenter& Instance();

    /// Installs the translation "<name>_<locale>.qm" for the user's languages, best first; English
    /// texts need none. Looked for in the folder set, then in the resources ":/<name>" and
    /// ":/translations". Finding none is no error. A name registered several times stays installed
    /// until it was unregistered as often.
    void Register(const QString& name);

    /// Takes the translation of \a name away again; an unknown name is ignored.
    void Unregister(const QString& name);

    /// Puts \a center in place of the bundled one. Borrowed until the next call; null brings the
    /// bundled one back.
    static void SetInstance(TranslationCenter* center);

    /// Files in \a folder are preferred to the resources from now on. An empty one means the
    /// default: the folder that the environment variable HX_TRANSLATION_FOLDER names, if any.
    static void SetFolder(const QString& folder);

    /// Looks for the translations of all registered names again, after a change of language or of
    /// folder.
    static void Refresh();

protected:
    /// What Register and Unregister do; for a center that is put in place of the bundled one.
    virtual void DoRegister(const QString& name);
    virtual void DoUnregister(const QString& name);
};

#endif
