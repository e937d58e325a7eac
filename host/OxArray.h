// Growable array with the host's length vocabulary (logical and physical
// length, grow length).
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

template <class T>
class OxArray {
public:
    explicit OxArray(int physicalLength = 0, int growLength = 8) : m_grow(growLength > 0 ? growLength : 8) {
        if (physicalLength > 0) m_items.reserve(static_cast<size_t>(physicalLength));
    }

    int length() const { return static_cast<int>(m_items.size()); }
    int logicalLength() const { return length(); }
    int physicalLength() const { return static_cast<int>(m_items.capacity()); }
    int growLength() const { return m_grow; }
    bool isEmpty() const { return m_items.empty(); }

    OxArray& setLogicalLength(int n) {
        m_items.resize(static_cast<size_t>(n > 0 ? n : 0));
        return *this;
    }
    OxArray& setPhysicalLength(int n) {
        if (n < length()) m_items.resize(static_cast<size_t>(n > 0 ? n : 0));
        m_items.shrink_to_fit();
        m_items.reserve(static_cast<size_t>(n > 0 ? n : 0));
        return *this;
    }
    OxArray& setGrowLength(int n) {
        if (n > 0) m_grow = n;
        return *this;
    }

    T& operator[](int i) { return m_items[static_cast<size_t>(i)]; }
    const T& operator[](int i) const { return m_items[static_cast<size_t>(i)]; }
    T& at(int i) { return m_items.at(static_cast<size_t>(i)); }
    const T& at(int i) const { return m_items.at(static_cast<size_t>(i)); }
    T& first() { return m_items.front(); }
    const T& first() const { return m_items.front(); }
    T& last() { return m_items.back(); }
    const T& last() const { return m_items.back(); }

    int append(const T& v) {
        m_items.push_back(v);
        return length() - 1;
    }
    OxArray& append(const OxArray& other) {
        m_items.insert(m_items.end(), other.m_items.begin(), other.m_items.end());
        return *this;
    }
    OxArray& insertAt(int i, const T& v) {
        m_items.insert(m_items.begin() + i, v);
        return *this;
    }
    OxArray& removeAt(int i) {
        m_items.erase(m_items.begin() + i);
        return *this;
    }
    OxArray& removeFirst() { return removeAt(0); }
    OxArray& removeLast() {
        m_items.pop_back();
        return *this;
    }
    // Removes the first element equal to `v`; false when there is none.
    bool remove(const T& v) {
        auto it = std::find(m_items.begin(), m_items.end(), v);
        if (it == m_items.end()) return false;
        m_items.erase(it);
        return true;
    }
    int find(const T& v, int start = 0) const {
        for (int i = start; i < length(); ++i)
            if (m_items[static_cast<size_t>(i)] == v) return i;
        return -1;
    }
    bool contains(const T& v) const { return find(v) >= 0; }
    OxArray& removeAll() {
        m_items.clear();
        return *this;
    }

    T* asArrayPtr() { return m_items.data(); }
    const T* asArrayPtr() const { return m_items.data(); }
    auto begin() { return m_items.begin(); }
    auto end() { return m_items.end(); }
    auto begin() const { return m_items.begin(); }
    auto end() const { return m_items.end(); }

    bool operator==(const OxArray& o) const { return m_items == o.m_items; }

private:
    std::vector<T> m_items;
    int m_grow;
};
