// SPDX-FileCopyrightText: 2026 The Vesk authors
// SPDX-License-Identifier: Apache-2.0

#include "directory/Catalog.h"

#include <cmath>
#include <limits>

namespace directory {

template <typename T>
const T *Catalog::look(std::string_view id, List list, const std::vector<T> &items) const
{
    const auto found = m_index.find(std::string(id));
    return found != m_index.end() && found->second.list == list ? &items[found->second.index]
                                                                : nullptr;
}

template <typename T>
void Catalog::enter(List list, const std::vector<T> &items)
{
    for (std::size_t i = 0; i < items.size(); ++i)
        m_index.emplace(items[i].id, Place {list, i});
}

void Catalog::buildIndex()
{
    m_index.clear();
    enter(List::Genre, genres);
    enter(List::Category, categories);
    enter(List::Language, languages);
    enter(List::Region, regions);
    enter(List::Station, stations);
    enter(List::Show, shows);
    enter(List::Topic, topics);
    enter(List::Artist, artists);
}

std::string streamId(const Station &station, std::size_t index)
{
    return 'e' + station.id.substr(1) + std::to_string(index + 1);
}

const Genre *Catalog::genre(std::string_view id) const
{
    return look(id, List::Genre, genres);
}
const Category *Catalog::category(std::string_view id) const
{
    return look(id, List::Category, categories);
}
const Language *Catalog::language(std::string_view id) const
{
    return look(id, List::Language, languages);
}
const Region *Catalog::region(std::string_view id) const
{
    return look(id, List::Region, regions);
}
const Station *Catalog::station(std::string_view id) const
{
    return look(id, List::Station, stations);
}
StreamInstance Catalog::stream(std::string_view id) const
{
    StreamInstance found;
    if (id.size() < 3 || id.front() != 'e' || id.back() < '1' || id.back() > '9')
        return found;
    const Station *owner = station('s' + std::string(id.substr(1, id.size() - 2)));
    const auto index = static_cast<std::size_t>(id.back() - '1');
    if (owner && index < owner->streams.size()) {
        found.station = owner;
        found.index = index;
    }
    return found;
}
const Show *Catalog::show(std::string_view id) const
{
    return look(id, List::Show, shows);
}
const Topic *Catalog::topic(std::string_view id) const
{
    return look(id, List::Topic, topics);
}
const Artist *Catalog::artist(std::string_view id) const
{
    return look(id, List::Artist, artists);
}

const Region *Catalog::above(std::string_view id, Region::Kind kind) const
{
    const Region *at = region(id);
    while (at && at->kind != kind)
        at = region(at->parent);
    return at;
}

bool Catalog::within(std::string_view id, std::string_view ancestor) const
{
    for (const Region *at = region(id); at; at = region(at->parent)) {
        if (at->id == ancestor)
            return true;
    }
    return false;
}

const Region *Catalog::cityNearest(const Position &position) const
{
    constexpr double Radians = 3.14159265358979 / 180;
    const Region *nearest = nullptr;
    double best = std::numeric_limits<double>::max();
    for (const Region &city : regions) {
        if (city.kind != Region::Kind::City)
            continue;
        // An equirectangular distance is exact enough to choose between a few dozen cities.
        const double up = city.position.latitude - position.latitude;
        const double along = std::remainder(city.position.longitude - position.longitude, 360)
            * std::cos(position.latitude * Radians);
        const double distance = up * up + along * along;
        if (distance < best) {
            best = distance;
            nearest = &city;
        }
    }
    return nearest;
}

std::string Catalog::languageName(std::string_view id) const
{
    const Language *found = language(id);
    return found ? found->name : std::string();
}

std::string Catalog::genreName(std::string_view id) const
{
    const Genre *found = genre(id);
    return found ? found->name : std::string();
}

} // namespace directory
