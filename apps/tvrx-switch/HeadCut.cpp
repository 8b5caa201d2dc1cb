#include "HeadCut.h"

#include "Request.h"

#include <QDate>

#include <algorithm>
#include <vector>

namespace tvrx::sw {

namespace {

using claims::Encoding;
using claims::Field;

// A head this far from its nominal length is no head of the layout.
constexpr qsizetype kMostOffNominal = 6;

bool isDay(QStringView text) {
    if (text.size() != 8 || !allDigits(text)) return false;
    return text == u"00000000" ||
           QDate::fromString(text.toString(), QStringLiteral("yyyyMMdd")).isValid();
}

qsizetype shortest(const Field& field) {
    return field.encoding == Encoding::Text ? 0 : field.nominalWidth();
}

bool growsFreely(const Field& field) {
    return field.encoding == Encoding::Digits || field.encoding == Encoding::Text;
}

bool fits(const Field& field, QStringView piece) {
    switch (field.encoding) {
        case Encoding::None:
            return piece == field.constant;
        case Encoding::Digits:
            return allDigits(piece) && (piece.size() == field.width || piece.front() != u'0');
        case Encoding::Day:
            return isDay(piece);
        default:
            return true;
    }
}

struct Cut {
    QStringList values;
    int offNominal = 0;
    int firstOff = 0;  // index of the first item off its nominal width; the count when none

    bool betterThan(const Cut& other) const {
        if (offNominal != other.offNominal) return offNominal < other.offNominal;
        return firstOff < other.firstOff;
    }
};

class Search {
public:
    Search(std::span<const Field> items, QStringView head) : items_(items), head_(head) {
        shortestRest_.assign(items.size() + 1, 0);
        growsRest_.assign(items.size() + 1, false);
        for (std::size_t i = items.size(); i-- > 0;) {
            shortestRest_[i] = shortestRest_[i + 1] + shortest(items[i]);
            growsRest_[i] = growsRest_[i + 1] || growsFreely(items[i]);
        }
    }

    std::optional<Cut> run() {
        Cut current;
        current.firstOff = static_cast<int>(items_.size());
        step(0, 0, current);
        return best_;
    }

private:
    void step(std::size_t index, qsizetype at, Cut& current) {
        if (index == items_.size()) {
            if (at == head_.size() && (!best_ || current.betterThan(*best_))) best_ = current;
            return;
        }
        const Field& field = items_[index];
        const qsizetype left = head_.size() - at;
        const qsizetype longest =
            growsFreely(field) ? left - shortestRest_[index + 1] : shortest(field);
        for (qsizetype length = shortest(field); length <= longest; ++length) {
            const qsizetype rest = left - length;
            if (rest < shortestRest_[index + 1]) break;
            if (!growsRest_[index + 1] && rest != shortestRest_[index + 1]) continue;
            const QStringView piece = head_.sliced(at, length);
            if (!fits(field, piece)) continue;
            const bool off = length != field.nominalWidth();
            const Cut saved = current;
            current.values.append(piece.toString());
            current.offNominal += off ? 1 : 0;
            if (off && current.firstOff == static_cast<int>(items_.size())) {
                current.firstOff = static_cast<int>(index);
            }
            step(index + 1, at + length, current);
            current = saved;
        }
    }

    std::span<const Field> items_;
    QStringView head_;
    std::vector<qsizetype> shortestRest_;
    std::vector<bool> growsRest_;
    std::optional<Cut> best_;
};

}  // namespace

std::optional<QStringList> cutHead(std::span<const Field> items, QStringView head) {
    qsizetype nominal = 0;
    for (const Field& field : items) nominal += field.nominalWidth();
    if (std::abs(head.size() - nominal) > kMostOffNominal) return std::nullopt;
    const std::optional<Cut> cut = Search(items, head).run();
    if (!cut) return std::nullopt;
    return cut->values;
}

}  // namespace tvrx::sw
