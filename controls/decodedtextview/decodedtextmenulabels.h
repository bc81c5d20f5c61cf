#ifndef DECODEDTEXTMENULABELS_H
#define DECODEDTEXTMENULABELS_H

#include <QString>

/// Texts of the annotation entries of a text area's menu, two of which are titles of the change
/// dialog as well.
///
/// Translated once for the process, without context, and the same from then on, whatever the
/// language becomes: when the library has registered its translations, or at the first use if there
/// was no application object yet at that time (without one nothing can be translated).
struct DecodedTextMenuLabels
{
    /// The labels; translates them in the first call.
    static const DecodedTextMenuLabels& Get();

    const QString defineCallSign;
    const QString insertComment;
    const QString insertText;
    const QString editSelection;
    const QString deleteCallSign;
    const QString deleteComment;
    const QString deleteSelection;
    const QString deleteSection;
    const QString properties;
};

#endif
