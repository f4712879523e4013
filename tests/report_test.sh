#!/bin/bash
# Makes a report and works it in a browser: what a reader sees with script and without, and that
# names from the disk stay names. Ends with 77 when there is no browser.
#
#   report_test.sh VPATH WORK_DIR
set -euo pipefail

vpath=$1
work=$2
browser=$(command -v chromium || command -v chromium-browser) || exit 77

# 600 names in two directories each, one of them in more, one with all that HTML minds.
rm -rf "$work"
mkdir -p "$work/home" "$work/lib/a/@Cls" "$work/lib/b" "$work/lib/c"
cd "$work/lib"
touch a/name{1..600}.v b/name{1..600}.v c/NAME7.v a/@Cls/draw.v b/Cls.v c/only.v
evil='<img src=x onerror=alert(1)>&"'\''\'$'\n\xff\xe2\x80\xae\xed\xa0\x80\xc3\xa9\xf0\x9f\x98\x80\xe2\x82'
mkdir -p "c/x</script>$evil"
touch a/more{1..602}.v {b,c}/"$evil.v" "c/x</script>$evil/name7.v"
cd "$work/home"
VPATH="../lib/a:../lib/b:../lib/c:../lib/c/x</script>$evil" "$vpath" report -o page.html

# What the page says of itself once its own scripts have run.
cat > steps.html << 'END'
<script>
const say = [];
const section = id => document.getElementById(id);
const texts = (id, what) => [...section(id).querySelectorAll(what)].map(e => e.textContent);
const look = id => `${section(id).querySelector('[role=status]').textContent}: ` +
  texts(id, 'tbody th .name').slice(0, 2).join(', ');
const sort = (id, key) => section(id).querySelector(`[data-sort=${key}] button`).click();
const filter = (id, key, value) => {
  const field = section(id).querySelector(`[data-filter=${key}]`);
  field.value = value;
  field.dispatchEvent(new Event('input'));
};
say.push(look('names'));
sort('names', 'name');
say.push(`by name: ${look('names')}`);
sort('names', 'name');
say.push(`and back: ${look('names')}`);
sort('names', 'places');
say.push(`by places: ${look('names')}`);
filter('names', 'text', 'LIB/C/');
say.push(`in c: ${look('names')}`);
filter('names', 'kind', 'differs in case');
say.push(`in c, case: ${look('names')}`);
filter('names', 'text', '');
filter('names', 'kind', 'file against class');
say.push(`classes: ${look('names')}`);
filter('names', 'kind', '');
section('names').querySelector('.pager button:nth-child(2)').click();
say.push(`next: ${look('names')}`);
filter('names', 'text', 'onerror');
say.push(`evil: ${texts('names', 'tbody th .name')}`);
sort('directories', 'hidden');
say.push(`most hidden: ${texts('directories', 'tbody tr:first-child td').slice(0, 3)}`);
filter('directories', 'text', 'lib/a');
document.querySelectorAll('.map a')[1].click();
say.push(`area: ${document.activeElement.querySelector('.name').textContent}`);
say.push(`images: ${document.images.length}, scripts: ${document.scripts.length}`);
const widths = [...document.querySelectorAll('.map li')].map(e => e.offsetWidth * e.offsetHeight);
say.push(`areas: ${widths.length}, b to a ${(widths[1] / widths[0]).toFixed(2)}`);
document.title = 'said\n' + say.join('\n') + '\nend';
</script>
END
cat page.html steps.html > stepped.html
timeout 60 "$browser" --headless=new --no-sandbox --disable-gpu --user-data-dir="$work/browser" \
    --dump-dom "file://$work/home/stepped.html" > dom.html 2> browser.log || {
    cat browser.log
    exit 1
}
sed -n '/<title>said/,/^end/p' dom.html | sed -e '1d;$d' -e "s,$work,W,g" > said.txt
diff -u - said.txt << 'END'
1 to 50 of 602: name1, name10
by name: 1 to 50 of 602: &lt;img src=x onerror=alert(1)&gt;&amp;"'\\\n\xff\u202e\xed\xa0\x80é😀\xe2\x82, Cls
and back: 1 to 50 of 602: name600, name599
by places: 1 to 50 of 602: name7, name1
in c: 1 to 2 of 2: name7, &lt;img src=x onerror=alert(1)&gt;&amp;"'\\\n\xff\u202e\xed\xa0\x80é😀\xe2\x82
in c, case: 1 to 1 of 1: name7
classes: 1 to 1 of 1: Cls
next: 51 to 100 of 602: name143, name144
evil: name7,&lt;img src=x onerror=alert(1)&gt;&amp;"'\\\n\xff\u202e\xed\xa0\x80é😀\xe2\x82
most hidden: 2,602,600
area: W/lib/b
images: 0, scripts: 3
areas: 4, b to a 0.50
END

# Without script: the first rows, and how many there are.
[ "$(grep -c '<th scope="row"><bdi class="name">name' page.html)" = 500 ]
grep -q 'These are 500 of 602 names; a browser' page.html

# Nothing comes from anywhere else.
! grep -E '(src|href)="[^#]' page.html

# A long path has a map of some hundred areas: here groups of six, and the current directory.
mkdir "$work"/many "$work"/many/dir{1..1000}
touch "$work"/many/dir{1..1000}/file.v
"$vpath" --recursive "$work/many" report -o many.html
[ "$(grep -c '<li style=' many.html)" = 168 ]
grep -q 'title="2–7: 6 directories from [^ ]*/dir1 to [^ ]*/dir102; 6 files, 5 hidden"' many.html
