// Where the results of an analysis go, member by member, as they are computed.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace wqstat {

/** A tree of named members, told in order. An element of an array has no name. */
class ResultWriter {
public:
    virtual ~ResultWriter() = default;

    virtual void number(std::string_view name, double value) = 0;
    virtual void whole(std::string_view name, unsigned long long value) = 0;
    virtual void whole(std::string_view name, long long value) = 0;
    virtual void truth(std::string_view name, bool value) = 0;
    virtual void text(std::string_view name, std::string_view value) = 0;

    /** A member without a value. */
    virtual void nothing(std::string_view name) = 0;

    /** A member that is a list of texts. */
    virtual void texts(std::string_view name, const std::vector<std::string>& values)
    {
        array(name, values, [this](const std::string& value) { text("", value); });
    }

    /** The value of a column whose rows were analysed. */
    virtual void part(const std::string& column, const std::string& value)
    {
        object("by", [&] {
            text("column", column);
            text("value", value);
        });
    }

    /** The p by which the analysis decides, where it is set beside those of others; NaN where it tests nothing. */
    virtual void decidingP(double) {}

    /** To be called when the last analysis has been written. */
    virtual void finish() {}

    /** Whether every analysis of a kind has to have the same members; one that it does not have is nothing. */
    virtual bool hasFixedMembers() const { return false; }

    virtual void beginObject(std::string_view name) = 0;
    virtual void endObject() = 0;
    virtual void beginArray(std::string_view name) = 0;
    virtual void endArray() = 0;

    /** A member of the kind that its value has. */
    template <typename Value>
    void member(std::string_view name, const Value& value)
    {
        if constexpr (std::is_same_v<Value, bool>)
            truth(name, value);
        else if constexpr (std::is_floating_point_v<Value>)
            number(name, value);
        else if constexpr (std::is_unsigned_v<Value>)
            whole(name, static_cast<unsigned long long>(value));
        else if constexpr (std::is_integral_v<Value>)
            whole(name, static_cast<long long>(value));
        else
            text(name, value);
    }

    /** @param writeMembers called with nothing; it writes what the object holds. */
    template <typename WriteMembers>
    void object(std::string_view name, WriteMembers writeMembers)
    {
        beginObject(name);
        writeMembers();
        endObject();
    }

    /** @param writeElement called with each of the elements. */
    template <typename Elements, typename WriteElement>
    void array(std::string_view name, const Elements& elements, WriteElement writeElement)
    {
        beginArray(name);
        for (const auto& element : elements) writeElement(element);
        endArray();
    }
};

}  // namespace wqstat
