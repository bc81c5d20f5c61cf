#ifndef DECODEDTEXTCOMMONENDS_H
#define DECODEDTEXTCOMMONENDS_H

#include <QString>

/// How many characters two texts have in common at their front, and behind that at their end: what
/// lies between is what an edit changed. The ends do not overlap.
struct DecodedTextCommonEnds
{
    DecodedTextCommonEnds(const QString& before, const QString& after)
        : front(0)
        , back(0)
    {
        const int shorter = static_cast<int>(qMin(before.size(), after.size()));
        while (front < shorter && before.at(front) == after.at(front)) {
            ++front;
        }
        while (back < shorter - front &&
               before.at(before.size() - 1 - back) == after.at(after.size() - 1 - back)) {
            ++back;
        }
    }

    int front;
    int back;
};

#endif
