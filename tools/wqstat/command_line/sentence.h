// Sentences with names in them.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace wqstat {

/** This program's words, and names from data among them, which a page sets apart: they may run from right to left. */
class Sentence {
public:
    struct Part {
        std::string text;
        bool isName;

        friend bool operator==(const Part& a, const Part& b) { return a.text == b.text && a.isName == b.isName; }
    };

    Sentence() = default;
    Sentence(std::string words) { add({std::move(words), false}); }
    Sentence(const char* words) : Sentence(std::string(words)) {}

    static Sentence name(std::string text)
    {
        Sentence sentence;
        sentence.add({std::move(text), true});
        return sentence;
    }

    Sentence& operator+=(const Sentence& more)
    {
        for (const Part& part : more.content) add(part);
        return *this;
    }

    friend Sentence operator+(Sentence begin, const Sentence& end)
    {
        begin += end;
        return begin;
    }
    friend bool operator==(const Sentence& a, const Sentence& b) { return a.content == b.content; }
    friend bool operator!=(const Sentence& a, const Sentence& b) { return !(a == b); }

    bool empty() const { return content.empty(); }
    const std::vector<Part>& parts() const { return content; }

    std::string text() const
    {
        std::string whole;
        for (const Part& part : content) whole += part.text;
        return whole;
    }

private:
    void add(Part part)
    {
        if (!part.text.empty()) content.push_back(std::move(part));
    }

    std::vector<Part> content;
};

}  // namespace wqstat
