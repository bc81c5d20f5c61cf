#ifndef OWNEDVECTOR_H
#define OWNEDVECTOR_H

#include <QVector>

#include <memory>

namespace SorvinResultDataXml {

// The vectors of heap objects that the classes of the library own and hand out. Callers may have
// put null pointers into them.

/// Deletes all objects; the vector is empty before the first of them goes.
template <typename Object> void DeleteAll(QVector<Object*>& objects)
{
    if (objects.isEmpty())
        return;
    QVector<Object*> doomed;
    doomed.swap(objects);
    qDeleteAll(doomed);
}

/// Appends \a object unless it is null. When memory runs out, the object, which is handed over,
/// goes with the exception.
template <typename Object> void AppendOwned(QVector<Object*>& objects, Object* object)
{
    if (!object)
        return;
    std::unique_ptr<Object> guard(object);
    objects.append(object);
    guard.release();
}

/// Equal objects in the same order.
template <typename Object> bool EqualObjects(const QVector<Object*>& a, const QVector<Object*>& b)
{
    if (a.size() != b.size())
        return false;
    for (int i = 0; i < a.size(); ++i) {
        if (a.at(i) != b.at(i) && (!a.at(i) || !b.at(i) || *a.at(i) != *b.at(i)))
            return false;
    }
    return true;
}

} // namespace SorvinResultDataXml

#endif
