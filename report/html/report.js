// report.js - the lists of an HTML report: reads the records of the page, and shows those that are asked for.
//
// What is shown stands behind the # of the page's address, so that a view can be mailed, and plain links select it:
//   filter=WORDS   each word is part of the path, name, media type, identifier or error (letter case is ignored)
//   family=WORD    format=ID    only=unusual|unreadable|unknown|cut
//   sort=KEY, sort=-KEY   by a column, or by it from its end
// Text of records reaches the page through textContent alone.
'use strict';

(() => {
    const warnings = {extension: 1, cut: 2, several: 4};
    const listLength = 20;       // lines of the lists above the table
    const printedLength = 2000;  // their lines on paper
    const highestSheet = 8e6;    // pixels: browsers lay out no element that is much higher
    const page = JSON.parse(document.getElementById('answers').textContent);
    const answers = page.answers;
    const numbers = new Intl.NumberFormat('en');

    // ---- Small tools -----------------------------------------------------------------------------------------------

    function element(name, properties = {}, children = []) {
        const made = document.createElement(name);
        for (const [key, value] of Object.entries(properties)) {
            if (key in made) {
                made[key] = value;
            } else {
                made.setAttribute(key, value);
            }
        }
        made.append(...children);
        return made;
    }

    // Characters that can't be seen, or that turn the text around them; blanks at either end are none that can.
    const hidden = new RegExp(
        '([\\u0000-\\u001f\\u007f-\\u009f\\u00ad\\u061c\\u180e\\u200b\\u200e\\u200f\\u2028-\\u202e\\u2060-\\u206f' +
            '\\ufeff\\ufff9-\\ufffb\\u{e0000}-\\u{e007f}]|^ +| +$)',
        'u');
    const everyHidden = new RegExp(hidden, 'gu');
    const openBox = '\u2423';
    const shortEscapes = {'\n': '\\n', '\r': '\\r', '\t': '\\t'};

    function escapeOf(character) {
        if (character.startsWith(' ')) return openBox.repeat(character.length);
        return shortEscapes[character] || '\\u' + character.codePointAt(0).toString(16).toUpperCase().padStart(4, '0');
    }

    // Puts text into an element, with marks where characters are hidden.
    function show(place, text) {
        if (!hidden.test(text)) {
            place.textContent = text;
            return;
        }
        place.textContent = '';
        // What stands between two parts of a text that was split is of the expression.
        text.split(hidden).forEach((part, index) => {
            const isHidden = index % 2 === 1;
            place.append(isHidden ? element('span', {className: 'escape', textContent: escapeOf(part)}) : part);
        });
    }

    const plain = (text) => text.replace(everyHidden, escapeOf);

    function tellSize(bytes) {
        if (bytes < 1000) return bytes + ' B';
        const units = ['kB', 'MB', 'GB', 'TB', 'PB', 'EB'];
        let size = bytes / 1000;
        let unit = 0;
        for (; size >= 999.5; ++unit) size /= 1000;
        return size.toFixed(size < 9.995 ? 2 : size < 99.95 ? 1 : 0) + ' ' + units[unit];
    }

    const timeOf = (seconds) => new Date(seconds * 1000).toISOString().replace('.000Z', 'Z');
    const tellTime = (seconds) => timeOf(seconds).slice(0, 16).replace('T', ' ');

    // ---- The records -----------------------------------------------------------------------------------------------

    // Columns of their own, each an array with an item for each record: a page of a million records stays small so.
    const none = -1;  // the answer of a record that has none; errors stand below it
    const records = {
        count: page.files,
        path: new Array(page.files),
        bytes: new Map(),  // of paths that are no UTF-8, in hexadecimal
        size: new Float64Array(page.files),
        mtime: new Float64Array(page.files),
        warning: new Uint8Array(page.files),
        answer: new Int32Array(page.files),
        errors: [],
        more: {},  // what options add, by key
    };
    const moreKeys = page.columns.slice(4, -1);
    for (const key of moreKeys) records.more[key] = new Array(page.files);

    function numberOr(value, missing) { return value === null ? missing : value; }

    function readBlock(values, start) {
        const width = page.columns.length;
        let record = start;
        for (let place = 0; place < values.length; place += width, ++record) {
            const path = values[place];
            if (typeof path === 'string') {
                records.path[record] = path;
            } else {
                records.path[record] = path[0];
                records.bytes.set(record, path[1]);
            }
            records.size[record] = numberOr(values[place + 1], NaN);
            records.mtime[record] = numberOr(values[place + 2], NaN);
            records.warning[record] = numberOr(values[place + 3], 0);
            moreKeys.forEach((key, index) => {
                records.more[key][record] = values[place + 4 + index];
            });
            const answer = values[place + width - 1];
            if (typeof answer === 'string') {
                records.answer[record] = none - records.errors.push(answer);
            } else {
                records.answer[record] = numberOr(answer, none);
            }
        }
        return record;
    }

    function readRecords() {
        let record = 0;
        for (const block of document.querySelectorAll('script.records')) {
            record = readBlock(JSON.parse(block.textContent), record);
        }
    }

    const answerOf = (record) => answers[records.answer[record]];
    const errorOf = (record) => records.answer[record] < none ? records.errors[none - 1 - records.answer[record]] : '';
    const formatOf = (answer) => answer.further || answer.fiid;
    const nameOf = (answer) => answer.version ? `${answer.name} (${answer.version})` : answer.name;
    const isUnusual = (record) => (records.warning[record] & warnings.extension) !== 0;

    function warningsOf(record) {
        return Object.keys(warnings).filter((word) => records.warning[record] & warnings[word]);
    }

    function tellExtensions(words) {
        return words.split(' ').filter(Boolean).map((extension) => '.' + extension).join(' ');
    }

    const usualExtensions = (answer) => tellExtensions(answer.extensions);

    // ---- Columns of the table --------------------------------------------------------------------------------------

    // The records' places in the order of a text of their answers, so that sorting compares numbers.
    function rankAnswers(textOf) {
        const texts = answers.map((answer) => textOf(answer).toLowerCase());
        const sorted = [...new Set(texts)].sort();
        const rank = new Map(sorted.map((text, index) => [text, index]));
        const ranks = texts.map((text) => text === '' ? NaN : rank.get(text));
        return (record) => records.answer[record] >= 0 ? ranks[records.answer[record]] : NaN;
    }

    function showPath(cell, record) {
        const path = records.path[record];
        const slash = path.lastIndexOf('/', path.length - 2) + 1;
        const folder = element('bdi');
        const name = element('span', {className: 'name'});
        show(folder, path.slice(0, slash));
        show(name, path.slice(slash));
        cell.replaceChildren(element('span', {className: 'folder'}, [folder]), name);
        const bytes = records.bytes.get(record);
        cell.title = bytes === undefined ? plain(path) : `${plain(path)}\nBytes: ${bytes}`;
        cell.classList.toggle('bytes', bytes !== undefined);
    }

    function showFormat(cell, record) {
        const answer = answerOf(record);
        const text = answer ? nameOf(answer) : errorOf(record);
        show(cell, text);
        cell.title = plain(text);
        cell.classList.toggle('failure', records.answer[record] < none);
    }

    function showOfAnswer(textOf) {
        return (cell, record) => {
            const answer = answerOf(record);
            const text = answer ? textOf(answer) : '';
            show(cell, text);
            cell.title = plain(text);
        };
    }

    const noteTexts = {extension: 'unusual name', cut: 'cut short', several: 'several formats'};
    const noteTitles = {
        extension: 'The extension is not usual for what the file is',
        cut: 'The file ends in front of what its own structure tells of',
        several: 'Several PRONOM identifiers remain possible',
    };

    function showNotes(cell, record) {
        cell.replaceChildren();
        if (records.answer[record] < none)
            cell.append(element('span', {className: 'badge failure', textContent: 'unreadable'}));
        for (const word of warningsOf(record)) {
            if (word === 'several') continue;
            let title = noteTitles[word];
            if (word === 'extension') title += '; usual: ' + usualExtensions(answerOf(record));
            cell.append(element('span', {className: 'badge ' + word, textContent: noteTexts[word], title}));
        }
    }

    function showNumber(valueOf, tell, tellExactly) {
        return (cell, record) => {
            const value = valueOf(record);
            const known = value !== null && !Number.isNaN(value);
            cell.textContent = known ? tell(value) : '';
            cell.title = known ? tellExactly(value) : '';
        };
    }

    const sizeOf = (record) => records.size[record];
    const modifiedOf = (record) => records.mtime[record];
    const exactSize = (bytes) => numbers.format(bytes) + (bytes === 1 ? ' byte' : ' bytes');

    // key: of an address; value: what is sorted by, missing ones (NaN, "") last; show: fills a cell.
    const columns = [
        {
            key: 'path',
            title: 'Path',
            width: 'minmax(14rem, 3.2fr)',
            value: (record) => records.path[record],
            show: showPath
        },
        {key: 'format', title: 'Format', width: 'minmax(9rem, 2.2fr)', value: rankAnswers(nameOf), show: showFormat},
        {
            key: 'mime',
            title: 'Media type',
            width: 'minmax(0, 1.7fr)',
            value: rankAnswers((answer) => answer.mime),
            show: showOfAnswer((answer) => answer.mime)
        },
        {
            key: 'puid',
            title: 'PRONOM',
            width: '6rem',
            value: rankAnswers((answer) => answer.puid),
            show: showOfAnswer((answer) => answer.puid)
        },
        {
            key: 'size',
            title: 'Size',
            width: '5.5rem',
            value: sizeOf,
            number: true,
            show: showNumber(sizeOf, tellSize, exactSize)
        },
        {
            key: 'mtime',
            title: 'Modified (UTC)',
            width: '9rem',
            value: modifiedOf,
            number: true,
            show: showNumber(modifiedOf, tellTime, timeOf)
        },
        {
            key: 'note',
            title: 'Note',
            width: '7.5rem',
            show: showNotes,
            value: (record) => records.answer[record] < none ? 0 :
                records.warning[record] & 3                  ? 4 - (records.warning[record] & 3) :
                                                               NaN
        },
    ];

    const ownColumns = columns.length;
    const moreTitles = {
        copies: 'Copies',
        sha256: 'SHA-256',
        xxh3: 'XXH3',
        change: 'Change',
        run: 'Run',
        time: 'Seen (UTC)',
        before: 'Before'
    };

    function addColumn(column, place = columns.length - 1) { columns.splice(place, 0, column); }

    function addMoreColumns() {
        if (page.extensions) {
            addColumn({
                key: 'extensions',
                title: 'Usual',
                width: '6rem',
                value: rankAnswers(usualExtensions),
                show: showOfAnswer(usualExtensions)
            });
        }
        for (const key of moreKeys.filter((word) => word in moreTitles)) {
            const value = (record) => records.more[key][record];
            const isNumber = ['copies', 'run', 'time'].includes(key);
            const tell = key === 'time' ? tellTime : (number) => numbers.format(number);
            addColumn({
                key,
                title: moreTitles[key],
                number: isNumber,
                width: {time: '9rem', before: 'minmax(0, 1.6fr)', sha256: '8rem', xxh3: '8rem'}[key] || '4.8rem',
                value: (record) => value(record) === null ? (isNumber ? NaN : '') : value(record),
                show: isNumber ? showNumber(value, tell, key === 'time' ? timeOf : tell) :
                                 (cell, record) => {
                                     show(cell, value(record) || '');
                                     cell.title = plain(value(record) || '');
                                     cell.classList.toggle('code', key === 'sha256' || key === 'xxh3');
                                 },
            });
        }
    }

    // ---- What is asked for -----------------------------------------------------------------------------------------

    const choices =
        {all: 'All files', unusual: 'Unusual names', unreadable: 'Unreadable', unknown: 'Unknown', cut: 'Cut short'};
    let view = {filter: '', family: '', format: '', only: '', sort: ''};
    let shown = new Uint32Array(0);  // the records of the view, in its order

    function readAddress() {
        const asked = new URLSearchParams(location.hash.slice(1));
        for (const key of Object.keys(view)) view[key] = asked.get(key) || '';
        if (!(view.only in choices)) view.only = '';
    }

    function writeAddress() {
        const asked = new URLSearchParams();
        for (const [key, value] of Object.entries(view))
            if (value !== '') asked.set(key, value);
        history.replaceState(null, '', '#' + asked);
    }

    // Whether the files of an answer can be in the view at all, and which words are not part of it.
    function testAnswer(answer, words) {
        if (view.family !== '' && (!answer || answer.family !== view.family)) return null;
        if (view.format !== '' && (!answer || String(formatOf(answer)) !== view.format)) return null;
        if (view.only === 'unknown' && (!answer || answer.family !== 'unknown')) return null;
        if (!answer) return words;
        const text = [nameOf(answer), answer.mime, answer.puid, answer.family].join('\n').toLowerCase();
        return words.filter((word) => !text.includes(word));
    }

    const onlyTests = {
        unusual: isUnusual,
        unreadable: (record) => records.answer[record] < none,
        cut: (record) => (records.warning[record] & warnings.cut) !== 0,
    };

    function hasWords(record, words) {
        if (words.length === 0) return true;
        let text = records.path[record].toLowerCase();
        if (records.answer[record] < none) text += '\n' + errorOf(record).toLowerCase();
        for (const key of moreKeys)
            if (typeof records.more[key][record] === 'string') text += '\n' + records.more[key][record].toLowerCase();
        return words.every((word) => text.includes(word));
    }

    function selectRecords() {
        const words = view.filter.toLowerCase().split(' ').filter(Boolean);
        const ofAnswers = answers.map((answer) => testAnswer(answer, words));
        const ofOthers = testAnswer(undefined, words);
        const test = onlyTests[view.only] || (() => true);
        const taken = new Uint32Array(records.count);
        let count = 0;
        for (let record = 0; record < records.count; ++record) {
            const left = records.answer[record] >= 0 ? ofAnswers[records.answer[record]] : ofOthers;
            if (left !== null && test(record) && hasWords(record, left)) taken[count++] = record;
        }
        return taken.subarray(0, count);
    }

    // In the order of a column; equal records stay as they are, those without a value come last.
    function sortRecords(selected) {
        const fromEnd = view.sort.startsWith('-');
        const column = columns.find((one) => one.key === view.sort.replace('-', ''));
        if (column === undefined) return selected;
        const values = new Array(records.count);
        const known = [];
        const missing = [];
        for (const record of selected) {
            const value = values[record] = column.value(record);
            (value === '' || Number.isNaN(value) ? missing : known).push(record);
        }
        const direction = fromEnd ? -1 : 1;
        known.sort(
            (left, right) => values[left] < values[right] ? -direction :
                values[left] > values[right]              ? direction :
                                                            left - right);
        return Uint32Array.from(known.concat(missing));
    }

    // ---- The table -------------------------------------------------------------------------------------------------

    const files = document.getElementById('files');
    const count = element('p', {id: 'count', role: 'status'});
    const body = element('tbody', {role: 'rowgroup'});
    const head = element('thead', {role: 'rowgroup'});
    const table = element('table', {role: 'grid', tabIndex: 0, id: 'table', 'aria-labelledby': 'all'}, [head, body]);
    const sheet = element('div', {className: 'sheet'}, [table]);
    const pane = element('div', {className: 'pane', tabIndex: -1}, [sheet]);
    const nothing = element('p', {className: 'nothing', textContent: 'No file is like that.', hidden: true});
    let rowHeight = 30;
    let top = 0;         // how far the rows are scrolled, in pixels of a sheet as high as all rows are
    let lastScroll = 0;  // how far the pane was when that was worked out
    let active = none;   // the place in `shown` that the keyboard is at

    const bodyHeight = () => pane.clientHeight - head.offsetHeight;
    const highestTop = () => Math.max(0, shown.length * rowHeight - bodyHeight());
    const highestScroll = () => Math.max(0, pane.scrollHeight - pane.clientHeight);

    function makeRow() {
        const row = element('tr', {role: 'row'});
        for (const column of columns) {
            row.append(element('td', {role: 'gridcell', className: `${column.key} ${column.number ? 'number' : ''}`}));
        }
        return row;
    }

    function fillRow(row, place) {
        const record = shown[place];
        row.id = 'row' + place;
        row.setAttribute('aria-rowindex', place + 2);
        row.classList.toggle('active', place === active);
        row.classList.toggle('odd', place % 2 === 1);
        row.classList.toggle('warned', (records.warning[record] & (warnings.extension | warnings.cut)) !== 0);
        if (row.record === record) return;
        row.record = record;
        columns.forEach((column, index) => column.show(row.cells[index], record));
    }

    function drawRows() {
        const first = Math.floor(top / rowHeight);
        const wanted = Math.min(shown.length - first, Math.ceil(bodyHeight() / rowHeight) + 1);
        while (body.rows.length < wanted) body.append(makeRow());
        while (body.rows.length > wanted) body.lastChild.remove();
        for (let index = 0; index < wanted; ++index) fillRow(body.rows[index], first + index);
        body.style.transform = `translateY(${first * rowHeight - top}px)`;
        const isDrawn = active >= first && active < first + wanted;
        if (isDrawn)
            table.setAttribute('aria-activedescendant', 'row' + active);
        else
            table.removeAttribute('aria-activedescendant');
    }

    // A sheet that would be too high is less high than its rows: small steps move by rows all the same, large ones in
    // proportion.
    function followScroll() {
        const step = pane.scrollTop - lastScroll;
        const isWhole = highestTop() <= highestScroll() + 1;
        const atEnd = pane.scrollTop <= 0 || pane.scrollTop >= highestScroll();
        if (isWhole)
            top = pane.scrollTop;
        else if (Math.abs(step) < bodyHeight() && !atEnd)
            top += step;
        else
            top = pane.scrollTop / highestScroll() * highestTop();
        top = Math.min(Math.max(top, 0), highestTop());
        lastScroll = pane.scrollTop;
        drawRows();
    }

    function scrollToTop(wanted) {
        top = Math.min(Math.max(wanted, 0), highestTop());
        pane.scrollTop = highestTop() === 0 ? 0 : top / highestTop() * highestScroll();
        lastScroll = pane.scrollTop;
        drawRows();
    }

    function layOut() {
        const height = parseFloat(getComputedStyle(table).getPropertyValue('--row-height'));
        if (height > 0) rowHeight = height;
        table.style.height = '';
        sheet.style.height = Math.min(shown.length * rowHeight + head.offsetHeight, highestSheet) + 'px';
        table.style.height = pane.clientHeight + 'px';
        scrollToTop(top);
    }

    function activate(place) {
        active = Math.min(Math.max(place, 0), shown.length - 1);
        if (active * rowHeight < top)
            scrollToTop(active * rowHeight);
        else if ((active + 1) * rowHeight > top + bodyHeight())
            scrollToTop((active + 1) * rowHeight - bodyHeight());
        else
            drawRows();
    }

    function takeKey(event) {
        if (event.target !== table || shown.length === 0) return;
        const screen = Math.max(1, Math.floor(bodyHeight() / rowHeight) - 1);
        const places = {
            ArrowDown: active + 1,
            ArrowUp: active - 1,
            PageDown: active + screen,
            PageUp: active - screen,
            Home: 0,
            End: shown.length - 1
        };
        if (event.key in places)
            activate(places[event.key]);
        else if (event.key === 'Enter' && active >= 0)
            openDetails(shown[active]);
        else
            return;
        event.preventDefault();
    }

    function sortBy(key) {
        view.sort = view.sort === key ? '-' + key : view.sort === '-' + key ? '' : key;
        writeAddress();
        update();
    }

    function drawHead() {
        const row = element('tr', {role: 'row', 'aria-rowindex': 1});
        for (const column of columns) {
            const order = view.sort === column.key ? 'ascending' :
                view.sort === '-' + column.key     ? 'descending' :
                                                     'none';
            const button =
                element('button', {type: 'button', textContent: column.title, title: `Sort by ${column.title}`});
            button.addEventListener('click', () => sortBy(column.key));
            row.append(element(
                'th', {
                    role: 'columnheader',
                    scope: 'col',
                    'aria-sort': order,
                    className: `${column.key} ${column.number ? 'number' : ''}`
                },
                [button]));
        }
        const focused = head.contains(document.activeElement) ?
            [...head.querySelectorAll('button')].indexOf(document.activeElement) :
            -1;
        head.replaceChildren(row);
        if (focused >= 0) head.querySelectorAll('button')[focused].focus();
    }

    // ---- One record ------------------------------------------------------------------------------------------------

    const details = element('dialog', {id: 'details', 'aria-labelledby': 'file'});

    // All that is known of a record, as the JSON format has it.
    function fieldsOf(record) {
        const answer = answerOf(record);
        const fields = {path: records.path[record], path_hex: records.bytes.get(record), error: errorOf(record)};
        if (answer) {
            Object.assign(fields, answer, {warning: warningsOf(record).join(' ')});
        }
        if (!Number.isNaN(records.size[record])) fields.size = records.size[record];
        if (!Number.isNaN(records.mtime[record])) fields.mtime = timeOf(records.mtime[record]);
        for (const key of moreKeys) fields[key] = records.more[key][record];
        if (typeof fields.time === 'number') fields.time = timeOf(fields.time);
        for (const key of ['further', 'further_row'])
            if (fields[key] === 0) delete fields[key];
        return Object.entries(fields).filter(([, value]) => value !== undefined && value !== null && value !== '');
    }

    const fieldTitles = {
        path: 'Path',
        path_hex: 'Path, bytes',
        error: 'Error',
        fiid: 'Identifier',
        further: 'Further identifier',
        name: 'Format',
        version: 'Version',
        mime: 'Media type',
        puid: 'PRONOM',
        family: 'Family',
        extensions: 'Usual extensions',
        basis: 'Told by',
        warning: 'Warnings',
        size: 'Size',
        mtime: 'Modified',
        row: 'Row',
        signature: 'Signature',
        routine: 'Routine',
        further_row: 'Further row',
        further_signature: 'Further signature',
        looked_at: 'Looked at',
        bytes_read: 'Bytes read',
        calls: 'Calls',
        ...moreTitles,
        time: 'Seen',
    };

    const fieldForms = {
        size: exactSize,
        warning: (words) => words.split(' ').map((word) => noteTitles[word]).join('; '),
        extensions: tellExtensions,
    };

    function openDetails(record) {
        const list = element('dl');
        for (const [key, value] of fieldsOf(record)) {
            const place = element('dd', {'data-field': key});
            show(place, key in fieldForms ? fieldForms[key](value) : String(value));
            list.append(element('dt', {textContent: fieldTitles[key] || key}), place);
        }
        const close = element('button', {type: 'button', textContent: 'Close', autofocus: true});
        close.addEventListener('click', () => details.close());
        details.replaceChildren(element('h2', {id: 'file', textContent: 'File'}), list, close);
        details.showModal();
    }

    // ---- Rows for elsewhere ----------------------------------------------------------------------------------------

    const exportedKeys = [
        'path', 'path_hex', 'fiid', 'name', 'mime', 'puid', 'error', 'further', 'version', 'basis', 'warning', 'size',
        'mtime', 'family', 'extensions'
    ];

    function csvField(value) {
        const text = value === undefined ? '' : String(value);
        return /[",\r\n]/.test(text) ? `"${text.replaceAll('"', '""')}"` : text;
    }

    function exportCsv() {
        const keys = exportedKeys.concat(moreKeys);
        const parts = [keys.join(',') + '\r\n'];
        for (const record of shown) {
            const fields = Object.fromEntries(fieldsOf(record));
            parts.push(keys.map((key) => csvField(fields[key])).join(',') + '\r\n');
        }
        const address = URL.createObjectURL(new Blob(parts, {type: 'text/csv;charset=utf-8'}));
        element('a', {href: address, download: 'files.csv'}).click();
        setTimeout(() => URL.revokeObjectURL(address), 60000);
    }

    // ---- Above the table -------------------------------------------------------------------------------------------

    const search = element('input', {
        type: 'search',
        id: 'filter',
        placeholder: 'Path, format, media type, PRONOM',
        spellcheck: false,
        autocomplete: 'off'
    });
    const familyChoice = element('select', {id: 'family'});
    const formatChoice = element('select', {id: 'format'});
    const onlyChoice = element('select', {id: 'only'});

    function labelled(text, control) { return element('label', {}, [element('span', {textContent: text}), control]); }

    function fillChoice(choice, first, pairs) {
        choice.replaceChildren(new Option(first, ''), ...pairs.map(([value, text]) => new Option(text, value)));
    }

    function byText(left, right) { return left[1].localeCompare(right[1], 'en'); }

    function fillChoices() {
        const families = new Map();
        const formats = new Map();
        for (const answer of answers) {
            families.set(answer.family, answer.family);
            formats.set(String(formatOf(answer)), answer.name);
        }
        fillChoice(familyChoice, 'All families', [...families].sort(byText));
        fillChoice(formatChoice, 'All formats', [...formats].sort(byText));
        fillChoice(onlyChoice, choices.all, Object.entries(choices).filter(([key]) => key !== 'all'));
    }

    function takeChoices() {
        Object.assign(view, {
            filter: search.value.trim(),
            family: familyChoice.value,
            format: formatChoice.value,
            only: onlyChoice.value
        });
        writeAddress();
        update();
    }

    function showChoices() {
        if (search.value.trim() !== view.filter) search.value = view.filter;
        familyChoice.value = view.family;
        formatChoice.value = view.format;
        onlyChoice.value = view.only;
        reset.hidden = !(view.filter || view.family || view.format || view.only);
        for (const link of document.querySelectorAll('a[href^=\'#\']')) {
            const asked = new URLSearchParams(link.hash.slice(1));
            const isChosen = ['family', 'format', 'only'].some((key) => asked.get(key) && asked.get(key) === view[key]);
            if (isChosen)
                link.setAttribute('aria-current', 'true');
            else
                link.removeAttribute('aria-current');
        }
    }

    const reset = element('button', {type: 'button', textContent: 'Show all', hidden: true});
    const download = element(
        'button', {type: 'button', textContent: 'Save as CSV', title: 'The files that are shown, in their order'});

    function later(delay, action) {
        let timer = 0;
        return () => {
            clearTimeout(timer);
            timer = setTimeout(action, delay);
        };
    }

    function update() {
        shown = sortRecords(selectRecords());
        active = none;
        top = 0;
        count.textContent = shown.length === records.count ?
            `${numbers.format(records.count)} ${records.count === 1 ? 'file' : 'files'}` :
            `${numbers.format(shown.length)} of ${numbers.format(records.count)} files`;
        nothing.hidden = shown.length !== 0;
        download.disabled = shown.length === 0;
        table.setAttribute('aria-rowcount', shown.length + 1);
        for (const row of body.rows) row.record = undefined;
        showChoices();
        drawHead();
        layOut();
    }

    // ---- Lists of what wants a look --------------------------------------------------------------------------------

    // The first records that pass a test. A list is longer on paper, where the table is not.
    function makeList(id, title, only, test, heads, fill) {
        const found = [];
        let all = 0;
        for (let record = 0; record < records.count; ++record) {
            if (test(record) && ++all <= printedLength) found.push(record);
        }
        if (all === 0) return null;
        const lines = element('tbody');
        const addLines = (end) => {
            for (const record of found.slice(lines.rows.length, end)) {
                const row = element('tr');
                for (let cell = 0; cell < heads.length; ++cell) row.append(element('td'));
                showPath(row.cells[0], record);
                fill(row, record);
                lines.append(row);
            }
            while (lines.rows.length > end) lines.lastChild.remove();
        };
        addLines(listLength);
        const heading = element('tr', {}, heads.map((text) => element('th', {scope: 'col', textContent: text})));
        const section = element('section', {id, className: 'panel'}, [
            element('h2', {}, [`${title} `, element('span', {className: 'many', textContent: numbers.format(all)})]),
            element('table', {className: 'list'}, [element('thead', {}, [heading]), lines]),
        ]);
        if (all > listLength) {
            const more = element(
                'p', {className: 'more'},
                [element('a', {href: '#only=' + only, textContent: `All ${numbers.format(all)} in the table`})]);
            section.append(more);
        }
        if (all > printedLength) {
            section.append(
                element('p', {className: 'onpaper', textContent: `And ${numbers.format(all - printedLength)} more.`}));
        }
        addEventListener('beforeprint', () => addLines(printedLength));
        addEventListener('afterprint', () => addLines(listLength));
        return section;
    }

    function makeLists() {
        return [
            makeList(
                'unreadable', 'Unreadable', 'unreadable', onlyTests.unreadable, ['Path', 'Reason'],
                (row, record) => show(row.cells[1], errorOf(record))),
            makeList(
                'unusual', 'Unusual names', 'unusual', isUnusual, ['Path', 'What it is', 'Usual extensions'],
                (row, record) => {
                    show(row.cells[1], nameOf(answerOf(record)));
                    show(row.cells[2], usualExtensions(answerOf(record)));
                }),
        ].filter(Boolean);
    }

    // ---- All of it -------------------------------------------------------------------------------------------------

    function listen() {
        pane.addEventListener('scroll', followScroll, {passive: true});
        table.addEventListener('keydown', takeKey);
        body.addEventListener('click', (event) => {
            const row = event.target.closest('tr');
            if (row === null || String(getSelection()) !== '') return;
            active = Number(row.id.slice(3));
            drawRows();
            openDetails(row.record);
        });
        details.addEventListener('click', (event) => {
            if (event.target === details) details.close();
        });
        search.addEventListener('input', later(records.count > 200000 ? 300 : 80, takeChoices));
        for (const choice of [familyChoice, formatChoice, onlyChoice]) choice.addEventListener('change', takeChoices);
        reset.addEventListener('click', () => {
            Object.assign(view, {filter: '', family: '', format: '', only: ''});
            writeAddress();
            update();
        });
        download.addEventListener('click', exportCsv);
        addEventListener('resize', later(60, layOut));
        addEventListener('hashchange', () => {
            readAddress();
            update();
        });
        // Also where the address is that of the link already.
        addEventListener('click', (event) => {
            const link = event.target.closest('a[href^=\'#\']');
            if (link !== null) document.getElementById('all').scrollIntoView();
        });
    }

    function build() {
        readRecords();
        addMoreColumns();
        table.style.setProperty('--columns', columns.map((column) => column.width).join(' '));
        sheet.style.setProperty('--least-width', 62 + 7 * (columns.length - ownColumns) + 'rem');
        const section = element('section', {className: 'files'}, [
            element('h2', {id: 'all', textContent: 'All files'}),
            element(
                'div', {className: 'controls'},
                [
                    labelled('Find', search), labelled('Family', familyChoice), labelled('Format', formatChoice),
                    labelled('Only', onlyChoice), reset, download
                ]),
            count,
            pane,
            nothing,
        ]);
        files.replaceChildren(...makeLists(), section, details);
        fillChoices();
        listen();
        readAddress();
        update();
        if (location.hash.length > 1) document.getElementById('all').scrollIntoView();
        // Behind the frame that shows the table: how long that took, for those who measure.
        requestAnimationFrame(() => setTimeout(() => performance.measure('table shown'), 0));
    }

    build();
})();
