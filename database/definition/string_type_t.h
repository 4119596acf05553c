#ifndef DATABASE_DEFINITION_STRING_TYPE_T_H
#define DATABASE_DEFINITION_STRING_TYPE_T_H

#include <QMetaType>
#include <QString>

#include "database/database_export.h"

namespace database {
namespace definition {

/**
 * Common shape of the enumerated string types: a value class that carries the
 * string written to files and packets, with one static instance per legal
 * value declared by the concrete class.
 *
 * Derived is the concrete class, so that each class counts its own
 * constructions in maxI and compares only with itself. Every construction
 * except a copy takes its id from maxI; id changes from run to run, so
 * nothing may persist it. Values are not validated: an unknown string is kept
 * as it came, and equals none of the statics.
 *
 * A concrete class T is completed by DATABASE_STRING_TYPE_DECLARE(T); after
 * the class in its header and DATABASE_STRING_TYPE_DEFINE(T); in its source
 * file, both at global scope with the fully qualified name.
 */
template<class Derived>
class string_type_t
{
public:
    /// Constructions of Derived so far, the statics included.
    static int maxI;

    string_type_t()
        : id(maxI++)
    {
    }

    string_type_t(QString const& _value)
        : id(maxI++)
        , value(_value)
    {
    }

    QString ToString() const { return value; }

    /// Case-sensitive, by value alone.
    bool operator==(Derived const& other) const { return value == other.value; }
    bool operator!=(Derived const& other) const { return value != other.value; }

protected:
    // A copy keeps the id of its origin, so that copies (returned statics,
    // containers, variants) leave maxI alone.
    string_type_t(string_type_t const&) = default;
    string_type_t& operator=(string_type_t const&) = default;
    ~string_type_t() = default;

    /// Made public with `using string_type_t::is;` by the classes that offer it.
    bool is(QString const& _value) const { return value == _value; }

    int id;
    QString value;
};

/**
 * Registers the converters of T to and from QString with the meta-type system
 * for as long as the library is loaded, so that the JSON serializer writes T as
 * its string and reads it back. One instance lives in each concrete class's
 * source file through DATABASE_STRING_TYPE_DEFINE.
 */
template<class T>
class string_type_registrar_t
{
public:
    string_type_registrar_t()
    {
        qRegisterMetaType<T>();
        toString = QMetaType::registerConverter<T, QString>([](T const& from) { return from.ToString(); });
        fromString = QMetaType::registerConverter<QString, T>([](QString const& from) { return T(from); });
    }

    ~string_type_registrar_t()
    {
        // No converter may outlive the code it points into. Only ours are
        // removed: a false from registration means someone else's is in place.
        if (toString)
            QMetaType::unregisterConverterFunction(QMetaType::fromType<T>(), QMetaType::fromType<QString>());
        if (fromString)
            QMetaType::unregisterConverterFunction(QMetaType::fromType<QString>(), QMetaType::fromType<T>());
    }

    string_type_registrar_t(string_type_registrar_t const&) = delete;
    string_type_registrar_t& operator=(string_type_registrar_t const&) = delete;

private:
    bool toString = false;
    bool fromString = false;
};

} // namespace definition
} // namespace database

// maxI is defined once, in the library, for each concrete class; the declaration
// here keeps other translation units and the library's users from making their own.
#define DATABASE_STRING_TYPE_DECLARE(T)                                                  \
    Q_DECLARE_METATYPE(T)                                                                \
    template<>                                                                           \
    DATABASE_EXPORT int ::database::definition::string_type_t<T>::maxI

// The counter is constant-initialised, so it is 0 before any static instance,
// whatever the order in which translation units are initialised. The registrar's
// name is unique, so that sources built together (unity builds) don't clash.
#define DATABASE_STRING_TYPE_JOIN_(a, b) a##b
#define DATABASE_STRING_TYPE_JOIN(a, b) DATABASE_STRING_TYPE_JOIN_(a, b)
#define DATABASE_STRING_TYPE_DEFINE(T)                                                   \
    namespace {                                                                          \
    const ::database::definition::string_type_registrar_t<T>                             \
        DATABASE_STRING_TYPE_JOIN(string_type_registrar_, __COUNTER__);                  \
    }                                                                                    \
    template<>                                                                           \
    int ::database::definition::string_type_t<T>::maxI = 0

#endif // DATABASE_DEFINITION_STRING_TYPE_T_H
