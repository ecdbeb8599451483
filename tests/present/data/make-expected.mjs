// Makes the tables that RoostFormat is tested against, with the Intl object of Node.js: another caller, and with
// an official build of Node.js another version of the CLDR data, than the program's own.
//
//   node make-expected.mjs > expected.json
//       the table, by the Node.js that runs this; 20 or later
//   node18 --harmony-intl-number-format-v3 make-expected.mjs > older.json
//   node make-expected.mjs --differences older.json > differences.json
//       what the table of an older CLDR says otherwise; older.json itself is not kept

import { readFileSync } from 'node:fs';

const locales = [
  'en', 'en-US', 'en-GB', 'en-IN', 'en-AU', 'en-CA', 'de', 'de-AT', 'de-CH', 'fr', 'fr-CA', 'fr-CH', 'es', 'es-MX',
  'es-419', 'pt-BR', 'pt-PT', 'it', 'it-CH', 'nl', 'pl', 'uk', 'ru', 'cs', 'sk', 'hu', 'ro', 'bg', 'el', 'tr', 'sv', 'nb',
  'da', 'fi', 'is', 'et', 'lv', 'lt', 'hr', 'sr', 'sl', 'ca', 'eu', 'gl', 'cy', 'ga', 'he', 'ar', 'ar-EG', 'ar-AE', 'fa',
  'ur', 'hi', 'bn', 'mr', 'ta', 'te', 'ne', 'th', 'my', 'km', 'vi', 'id', 'ms', 'fil', 'sw', 'am', 'ka', 'hy', 'kk', 'ja',
  'zh-Hans', 'zh-Hant', 'ko',
  'en-US-u-hc-h23', 'de-u-hc-h12', 'en-u-nu-arab', 'ar-u-nu-latn', 'hi-u-nu-deva', 'th-u-nu-thai', 'th-u-ca-gregory',
];

const minute = 60, hour = 3600, day = 86400;

// Counts are texts, since the greatest is no number of JavaScript or JSON.
const inputs = {
  compact: ['0', '7', '999', '1000', '1250', '1500', '-1500', '12345', '99949', '99950', '100000', '123456', '999499',
    '999500', '2300000', '45000000', '1234567890', '1500000000000', '9223372036854775807'],
  full: ['0', '999', '1234', '-12345', '1234567', '9223372036854775807'],
  signedCount: ['12', '0', '-3', '12345', '-1234567'],
  percent: [0, 0.125, 0.135, 0.254, 1, 12.345, -0.04],
  signedPercent: [0.12, -0.04, 0, 0.001, -0.001, 12.3],
  // Every plural form of every language, in every unit.
  ago: [0, 59.9, 1, 2, 3, 5, 11, 21, 42].map((n, i) => (i < 2 ? n : n * minute))
    .concat([1, 2, 3, 5, 11, 22].map((n) => n * hour), [1, 2, 3, 5, 6.9].map((n) => n * day))
    .concat([7, 14, 29].map((n) => n * day), [45, 75, 100, 165, 345].map((n) => n * day))
    .concat([400, 800, 1200, 2000, 4100, 8000, 36600].map((n) => n * day)),
  time: ['2026-03-04T00:05:00Z', '2026-03-04T09:05:59Z', '2026-03-04T12:00:00Z', '2026-03-04T15:05:00Z',
    '2026-03-04T23:59:00Z'],
  weekday: [...Array(7).keys()].map((n) => `2026-03-0${n + 1}T12:00:00Z`),
  date: [...Array(12).keys()].map((n) => `2026-${String(n + 1).padStart(2, '0')}-${n < 6 ? '04' : '25'}T12:00:00Z`),
  twelveHour: [''],
};

function compact(locale, text) {
  let size = Math.abs(Number(text));
  const options = { maximumFractionDigits: 0, roundingMode: 'halfEven' };
  if (size >= 1000) {
    while (size >= 1000) size /= 1000;
    Object.assign(options, { notation: 'compact', minimumFractionDigits: 0, maximumFractionDigits: size < 100 ? 1 : 0 });
  }
  return new Intl.NumberFormat(locale, options).format(BigInt(text));
}

// The greatest unit of the civil calendar that fits, counted back from the first moment of 2001: a first of January,
// so that months need no care for their lengths.
function unitOf(seconds) {
  const start = Date.UTC(2001, 0, 1), end = start - Math.floor(seconds * 1000);
  let months = 0;
  while (Date.UTC(2001, -months - 1, 1) >= end) months += 1;
  const days = Math.floor((start - end) / (day * 1000));
  if (months >= 12) return [Math.floor(months / 12), 'year'];
  if (months > 0) return [months, 'month'];
  if (days >= 7) return [Math.floor(days / 7), 'week'];
  if (days > 0) return [days, 'day'];
  return seconds >= hour ? [Math.floor(seconds / hour), 'hour'] : [Math.floor(seconds / minute), 'minute'];
}

function ago(locale, seconds) {
  if (seconds < minute) {
    return new Intl.RelativeTimeFormat(locale, { style: 'short', numeric: 'auto' }).format(0, 'second');
  }
  const [count, unit] = unitOf(seconds);
  return new Intl.RelativeTimeFormat(locale, { style: 'short', numeric: 'always' }).format(-count, unit);
}

const number = (options) => (locale, value) =>
  new Intl.NumberFormat(locale, { roundingMode: 'halfEven', maximumFractionDigits: 0, ...options })
    .format(typeof value === 'string' ? BigInt(value) : value);
const moment = (options) => (locale, text) =>
  new Intl.DateTimeFormat(locale, { timeZone: 'UTC', ...options }).format(new Date(text));

const kinds = {
  compact,
  full: number({}),
  signedCount: number({ signDisplay: 'exceptZero' }),
  percent: number({ style: 'percent' }),
  signedPercent: number({ style: 'percent', signDisplay: 'exceptZero' }),
  ago,
  time: moment({ hour: 'numeric', minute: 'numeric' }),
  weekday: moment({ weekday: 'short' }),
  date: moment({ day: 'numeric', month: 'short' }),
  twelveHour: (locale) => String(new Intl.DateTimeFormat(locale, { hour: 'numeric' }).resolvedOptions().hour12),
};

// What the newer data have otherwise than the older, by locale and kind.
const numbers = ['compact', 'full', 'signedCount', 'percent', 'signedPercent'];
const reasons = [
  { locales: ['en-GB'], kinds: ['compact'], reason: 'k, m, bn and tn instead of K, M, B and T' },
  { locales: ['en-IN'], kinds: ['compact'], reason: 'a thousand is K instead of T' },
  { locales: ['en-AU'], kinds: ['ago'], reason: 'no full stop after an abbreviated unit' },
  { locales: ['de-CH'], kinds: numbers, reason: "groups are separated by ' instead of ’" },
  { locales: ['es-MX', 'es-419'], kinds: ['time', 'twelveHour'], reason: 'twelve hours instead of twenty-four' },
  { locales: ['es-419'], kinds: ['percent', 'signedPercent'], reason: 'no space before the sign' },
  { locales: ['it', 'it-CH'], kinds: ['compact'], reason: 'thousands have a short form, K' },
  { locales: ['it', 'hu', 'sl', 'hy'], kinds: numbers.slice(1), reason: 'four digits are not grouped' },
  { locales: ['it-CH'], kinds: numbers.slice(1), reason: "four digits are not grouped, and groups are separated by '" },
  { locales: ['es-MX', 'nb', 'hi', 'hi-u-nu-deva', 'am'], kinds: ['date'], reason: 'another abbreviation of a month' },
  { locales: ['fi'], kinds: ['date'], reason: 'the month is a number' },
  { locales: ['my'], kinds: ['date'], reason: 'the month comes first' },
  { locales: ['eu'], kinds: ['ago'], reason: 'begins with a small letter' },
  { locales: ['gl'], kinds: ['weekday'], reason: 'begins with a small letter' },
  { locales: ['cy'], kinds: ['ago'], reason: 'another plural of years' },
  { locales: ['he'], kinds: ['ago'], reason: 'units are abbreviated' },
  { locales: ['ta'], kinds: ['ago'], reason: 'hours are abbreviated to one letter' },
  { locales: ['bn'], kinds: ['ago'], reason: 'another spelling of hour' },
  { locales: ['ar'], kinds: [...numbers, 'ago', 'time', 'date'], reason: 'digits are those of Europe where no region is named' },
  { locales: ['km'], kinds: numbers, reason: 'comma and point change places' },
  { locales: ['my'], kinds: ['compact'], reason: 'another word for ten millions' },
  { locales: ['th', 'th-u-nu-thai', 'th-u-ca-gregory'], kinds: ['weekday'], reason: 'weekdays are written out' },
  { locales: ['vi'], kinds: ['weekday'], reason: 'the word for day is written out' },
  { locales: ['ta', 'ko'], kinds: ['time'], reason: 'AM and PM instead of words' },
  { locales: ['am'], kinds: ['time'], reason: 'the word for the time of day comes first' },
];

function table() {
  const texts = {};
  for (const locale of locales) {
    texts[locale] = {};
    for (const [kind, format] of Object.entries(kinds)) {
      texts[locale][kind] = inputs[kind].map((value) => format(locale, value));
    }
  }
  const { node, icu, cldr } = process.versions;
  return { madeWith: { node, icu, cldr, command: 'node make-expected.mjs > expected.json' }, inputs, texts };
}

// One line per list, so that a change of the table can be read.
function print(value) {
  console.log(JSON.stringify(value, null, 1)
    .replace(/\[\n\s+([^\][{}]*?)\n\s+\]/g, (_, list) => `[${list.replace(/\n\s+/g, ' ')}]`));
}

if (process.argv[2] === '--differences') {
  const older = JSON.parse(readFileSync(process.argv[3], 'utf8')), newer = table();
  const differences = [];
  for (const locale of locales) {
    for (const kind of Object.keys(kinds)) {
      inputs[kind].forEach((input, index) => {
        const [before, now] = [older, newer].map((from) => from.texts[locale][kind][index]);
        if (before === now) return;
        if (!reasons.some((one) => one.locales.includes(locale) && one.kinds.includes(kind))) {
          throw new Error(`no reason is named for ${locale}, ${kind}: "${before}", now "${now}"`);
        }
        differences.push([locale, kind, String(input), before, now]);
      });
    }
  }
  const command = 'node make-expected.mjs --differences older.json > differences.json';
  print({ older: older.madeWith, newer: { ...newer.madeWith, command }, reasons, differences });
} else {
  print(table());
}
