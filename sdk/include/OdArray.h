#ifndef OD_ARRAY_H
#define OD_ARRAY_H

/// The platform's dynamic array with value semantics. Element access by index is checked:
/// an index out of range throws OdError_InvalidIndex instead of reading past the end.

#include "OdError.h"

#include <algorithm>
#include <initializer_list>
#include <vector>

template <class T> class OdArray {
public:
  typedef unsigned int size_type;
  typedef T value_type;
  typedef typename std::vector<T>::iterator iterator;
  typedef typename std::vector<T>::const_iterator const_iterator;

  OdArray() = default;
  explicit OdArray(size_type physicalLength) { m_data.reserve(physicalLength); }
  OdArray(std::initializer_list<T> values) : m_data(values) {}

  size_type size() const { return static_cast<size_type>(m_data.size()); }
  size_type length() const { return size(); }
  size_type logicalLength() const { return size(); }
  size_type physicalLength() const { return static_cast<size_type>(m_data.capacity()); }
  bool isEmpty() const { return m_data.empty(); }
  bool empty() const { return m_data.empty(); }

  T& operator[](size_type index) { return m_data[check(index)]; }
  const T& operator[](size_type index) const { return m_data[check(index)]; }
  T& at(size_type index) { return m_data[check(index)]; }
  const T& at(size_type index) const { return m_data[check(index)]; }
  const T& getAt(size_type index) const { return m_data[check(index)]; }
  OdArray& setAt(size_type index, const T& value) {
    m_data[check(index)] = value;
    return *this;
  }
  T& first() { return at(0); }
  const T& first() const { return at(0); }
  T& last() { return at(size() - 1); }
  const T& last() const { return at(size() - 1); }

  /// Appends and returns the new element's index.
  size_type append(const T& value) {
    m_data.push_back(value);
    return size() - 1;
  }
  OdArray& append(const OdArray& other) {
    m_data.insert(m_data.end(), other.m_data.begin(), other.m_data.end());
    return *this;
  }
  void push_back(const T& value) { m_data.push_back(value); }
  /// Inserts before index; index == length() appends.
  OdArray& insertAt(size_type index, const T& value) {
    if (index > size())
      throw OdError_InvalidIndex();
    m_data.insert(m_data.begin() + index, value);
    return *this;
  }
  OdArray& removeAt(size_type index) {
    m_data.erase(m_data.begin() + check(index));
    return *this;
  }
  /// Removes the elements from startIndex to endIndex, both included.
  OdArray& removeSubArray(size_type startIndex, size_type endIndex) {
    if (startIndex > endIndex)
      throw OdError_InvalidIndex();
    check(endIndex);
    m_data.erase(m_data.begin() + startIndex, m_data.begin() + endIndex + 1);
    return *this;
  }
  /// Removes the first element equal to value at or after start; false when there is none.
  bool remove(const T& value, size_type start = 0) {
    size_type at = 0;
    if (!find(value, at, start))
      return false;
    removeAt(at);
    return true;
  }
  OdArray& removeFirst() { return removeAt(0); }
  OdArray& removeLast() { return removeAt(size() - 1); }
  OdArray& removeAll() {
    m_data.clear();
    return *this;
  }
  void clear() { m_data.clear(); }

  bool find(const T& value, size_type& foundAt, size_type start = 0) const {
    for (size_type i = start; i < size(); ++i) {
      if (m_data[i] == value) {
        foundAt = i;
        return true;
      }
    }
    return false;
  }
  bool contains(const T& value, size_type start = 0) const {
    size_type unused = 0;
    return find(value, unused, start);
  }

  OdArray& setLogicalLength(size_type length) {
    m_data.resize(length);
    return *this;
  }
  OdArray& setPhysicalLength(size_type length) {
    if (length < size())
      m_data.resize(length);
    m_data.reserve(length);
    return *this;
  }
  void resize(size_type length) { m_data.resize(length); }
  void resize(size_type length, const T& value) { m_data.resize(length, value); }
  void reserve(size_type length) { m_data.reserve(length); }
  OdArray& setAll(const T& value) {
    std::fill(m_data.begin(), m_data.end(), value);
    return *this;
  }
  OdArray& reverse() {
    std::reverse(m_data.begin(), m_data.end());
    return *this;
  }
  OdArray& swap(size_type first, size_type second) {
    std::swap(m_data[check(first)], m_data[check(second)]);
    return *this;
  }

  T* asArrayPtr() { return m_data.data(); }
  const T* asArrayPtr() const { return m_data.data(); }
  const T* getPtr() const { return m_data.data(); }

  iterator begin() { return m_data.begin(); }
  iterator end() { return m_data.end(); }
  const_iterator begin() const { return m_data.begin(); }
  const_iterator end() const { return m_data.end(); }

  bool operator==(const OdArray& other) const { return m_data == other.m_data; }
  bool operator!=(const OdArray& other) const { return m_data != other.m_data; }

private:
  size_type check(size_type index) const {
    if (index >= size())
      throw OdError_InvalidIndex();
    return index;
  }

  std::vector<T> m_data;
};

typedef OdArray<int> OdIntArray;
typedef OdArray<OdUInt8> OdUInt8Array;
typedef OdArray<OdUInt32> OdUInt32Array;
typedef OdArray<double> OdGeDoubleArray;
typedef OdArray<void*> OdDbVoidPtrArray;
typedef OdArray<OdString> OdStringArray;

#endif
