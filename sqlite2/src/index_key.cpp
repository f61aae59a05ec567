#include "index_key.h"

#include <cmath>

namespace sqlite2 {

bool PassesNumberTest(std::string_view text)
{
    size_t i = 0;
    auto digits = [&] {
        size_t start = i;
        while (i < text.size() && text[i] >= '0' && text[i] <= '9')
            ++i;
        return i > start;
    };
    if (i < text.size() && (text[i] == '+' || text[i] == '-'))
        ++i;
    if (!digits())
        return false;
    if (i < text.size() && text[i] == '.') {
        ++i;
        if (!digits())
            return false;
    }
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        ++i;
        if (i < text.size() && (text[i] == '+' || text[i] == '-'))
            ++i;
        if (!digits())
            return false;
    }
    return i == text.size();
}

double TextToNumber(std::string_view text)
{
    // long double is the x87 extended type that SQLite 2 computed in.
    size_t i = 0;
    bool negative = false;
    if (i < text.size() && text[i] == '-') {
        negative = true;
        ++i;
    } else if (i < text.size() && text[i] == '+') {
        ++i;
    }
    long double acc = 0.0L;
    while (i < text.size() && text[i] >= '0' && text[i] <= '9')
        acc = acc * 10.0L + (text[i++] - '0');
    if (i < text.size() && text[i] == '.') {
        ++i;
        long double divisor = 1.0L;
        while (i < text.size() && text[i] >= '0' && text[i] <= '9') {
            acc = acc * 10.0L + (text[i++] - '0');
            divisor = divisor * 10.0L;
        }
        acc = acc / divisor;
    }
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        ++i;
        bool negativeExponent = false;
        if (i < text.size() && (text[i] == '-' || text[i] == '+'))
            negativeExponent = text[i++] == '-';
        int exponent = 0;
        while (i < text.size() && text[i] >= '0' && text[i] <= '9') {
            if (exponent < 100000)
                exponent = exponent * 10 + (text[i] - '0');
            ++i;
        }
        long double scale = 1.0L;
        while (exponent >= 64) {
            scale *= static_cast<long double>(1e64);
            exponent -= 64;
        }
        while (exponent >= 16) {
            scale *= 1e16L;
            exponent -= 16;
        }
        while (exponent >= 4) {
            scale *= 1e4L;
            exponent -= 4;
        }
        while (exponent >= 1) {
            scale *= 10.0L;
            exponent -= 1;
        }
        acc = negativeExponent ? acc / scale : acc * scale;
    }
    double result = double(acc);
    return negative ? -result : result;
}

std::string SortableNumberText(double r)
{
    static const char digit[] = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz|~";
    std::string out;
    bool negative = false;
    if (r < 0) {
        out.push_back('-');
        r = -r;
        negative = true;
    } else {
        out.push_back('0');
    }
    int e = 0;
    if (r == 0) {
        e = -1024;
    } else if (r < 1.0 / 128) {
        while (r < 1.0 / 128) {
            r *= 64;
            e -= 1;
        }
    } else if (r >= 0.5) {
        while (r >= 0.5 && e < 1023) {
            r /= 64;
            e += 1;
        }
    }
    if (negative) {
        e = -e;
        r = -r;
    }
    int exponent = e + 1024;
    double f = r + 0.5;
    if (exponent >= 2048 || f >= 1.0 || exponent < 0) {
        out.append(12, '~');
        return out;
    }
    out.push_back(digit[exponent / 64]);
    out.push_back(digit[exponent % 64]);
    for (int count = 0; f > 0 && count < 10; ++count) {
        f *= 64;
        int d = int(std::floor(f));
        out.push_back(digit[d]);
        f -= d;
    }
    return out;
}

std::string EncodeIndexKey(const std::vector<IndexField>& fields, int32_t rowid)
{
    std::string key;
    for (const IndexField& field : fields) {
        if (!field.value || !*field.value) {
            key.push_back('a');
        } else if (field.numeric && PassesNumberTest(**field.value)) {
            key.push_back('b');
            key += SortableNumberText(TextToNumber(**field.value));
        } else {
            key.push_back('c');
            key += **field.value;
        }
        key.push_back('\0');
    }
    return key + EncodeRowidKey(rowid);
}

} // namespace sqlite2
