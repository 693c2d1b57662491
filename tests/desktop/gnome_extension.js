// Whether both forms of the GNOME shell's extension are what a shell expects, and whom it answers what. With a shell
// of the test's own, on a session bus that nobody else uses: gjs -m gnome_extension.js FOLDER

import Gio from 'gi://Gio';
import GLib from 'gi://GLib';
import System from 'system';

const [folder] = ARGV;
const BUS_NAME = 'example.kestrin.Windows';

function check(isSo, what) {
    if (!isSo)
        throw new Error(`It is not so: ${what}`);
}

function read(path) {
    return new TextDecoder().decode(GLib.file_get_contents(path)[1]);
}

function extensionIn(form) {
    const path = `${folder}/${form}/windows@kestrin.example`;
    const metadata = JSON.parse(read(`${path}/metadata.json`));
    check(metadata.uuid === 'windows@kestrin.example', `${form} has its name`);
    check(metadata['session-modes'].includes('unlock-dialog'), `${form} goes on while the screen is locked`);
    const isOld = metadata['shell-version'].every(version => Number(version) < 45);
    check(isOld === (form === '43-44'), `${form} is for the shells that it can be loaded by`);
    return read(`${path}/extension.js`);
}

// As far as the extension knows them.
class Emitter {
    constructor() {
        this.handlers = new Map();
        this.last = 0;
    }

    connect(signal, handler) {
        this.handlers.set(++this.last, [signal, handler]);
        return this.last;
    }

    disconnect(id) {
        check(this.handlers.delete(id), 'only what was connected is disconnected');
    }

    emit(signal) {
        [...this.handlers.values()].filter(([name]) => name === signal).forEach(([, handler]) => handler());
    }
}

class Window extends Emitter {
    constructor(number, facts = {}) {
        super();
        this.number = number;
        this.facts = {pid: 100, canClose: true, width: 10, skips: false, popup: false, ...facts};
        this.deleted = 0;
    }

    get_stable_sequence() { return this.number; }
    get_pid() { return this.facts.pid; }
    get_wm_class() { return this.facts.wmClass ?? null; }
    get_wm_class_instance() { return null; }
    get_sandboxed_app_id() { return null; }
    get_frame_rect() { return {width: this.facts.width}; }
    can_close() { return this.facts.canClose; }
    is_skip_taskbar() { return this.facts.skips; }
    is_override_redirect() { return this.facts.popup; }
    delete() { this.deleted++; }
}

class App {
    constructor(id, windows) {
        this.id = id;
        this.windows = windows;
        this.quits = 0;
    }

    get_id() { return this.id; }
    get_windows() { return this.windows; }
    is_window_backed() { return this.id.startsWith('window:'); }
    request_quit() { return ++this.quits > 0; }
}

const whole = [new Window(1, {wmClass: 'Whole'}), new Window(2)];
const part = [new Window(3), new Window(4, {canClose: false}), new Window(5)];
const unseen = [new Window(6, {popup: true}), new Window(7, {width: 0})];
const bare = new Window(8, {pid: -1, skips: true});
const apps = [new App('whole.desktop', whole), new App('part.desktop', part), new App('window:8', [bare])];
let windows = [...whole, ...part, ...unseen, bare];

const tracker = new Emitter();
tracker.get_window_app = window => apps.find(app => app.windows.includes(window)) ?? null;
const Shell = {WindowTracker: {get_default: () => tracker}};
globalThis.global = {
    display: new Emitter(),
    get_window_actors: () => windows.map(window => ({meta_window: window, is_destroyed: () => false})),
    get_current_time: () => 0,
};

function allow(programs) {
    const path = GLib.build_filenamev([GLib.get_user_config_dir(), 'Kestrin']);
    GLib.mkdir_with_parents(path, 0o700);
    GLib.file_set_contents(`${path}/desktop-programs`, programs.join('\n'));
}

Gio._promisify(Gio.DBusConnection.prototype, 'call', 'call_finish');

async function call(member, parameters = null) {
    const answer = await Gio.DBus.session.call(BUS_NAME, '/example/kestrin/Windows', `${BUS_NAME}1`, member, parameters,
        null, Gio.DBusCallFlags.NO_AUTO_START, 5000, null);
    return answer.recursiveUnpack()[0];
}

async function errorOf(member) {
    try {
        await call(member);
        return null;
    } catch (error) {
        return Gio.DBusError.get_remote_error(error);
    }
}

async function named() {
    for (let left = 500; left > 0; left--) {
        if (await errorOf('Nothing') === 'org.freedesktop.DBus.Error.UnknownMethod')
            return;
        await new Promise(resolve => GLib.timeout_add(0, 10, () => resolve() ?? GLib.SOURCE_REMOVE));
    }
    check(false, 'it takes its name');
}

// The listener's own, so that it comes after what was told before.
function nextSignal() {
    return new Promise(resolve => {
        const id = Gio.DBus.session.signal_subscribe(null, `${BUS_NAME}1`, 'Changed', null, null,
            Gio.DBusSignalFlags.NONE, () => {
                Gio.DBus.session.signal_unsubscribe(id);
                resolve();
            });
    });
}

async function exercise(extension) {
    extension.enable();
    await named();
    allow([`${GLib.file_read_link('/proc/self/exe')}-other`, 'gjs']);
    check(await errorOf('List') === 'org.freedesktop.DBus.Error.AccessDenied', 'who was not allowed is not answered');
    allow(['# a remark', '', GLib.file_read_link('/proc/self/exe')]);
    const list = await call('List');
    check(JSON.stringify(list.map(window => window[0])) === '[1,2,3,4,5,8]', 'menus and unshown windows are no windows');
    check(JSON.stringify(list[0]) === '[1,100,"whole.desktop","Whole","","",true,true]', 'a window is told as it is');
    check(JSON.stringify(list[5]) === '[8,0,"","","","",true,false]', 'what is not known is told as that');

    check(await call('Quit', new GLib.Variant('(au)', [[1, 2, 3, 4, 99]])) === 3, 'what can be closed is counted');
    check(apps[0].quits === 1 && whole.every(window => window.deleted === 0), 'a whole application gets its own Quit');
    check(apps[1].quits === 0 && part.map(window => window.deleted).join() === '1,0,0', 'others are closed one by one');

    const told = nextSignal();
    const added = new Window(9);
    windows.push(added);
    global.display.emit('window-created');
    await told;
    check(added.handlers.size > 0, 'new windows are followed');
    windows = windows.filter(window => window !== added);
    added.emit('unmanaged');
    await nextSignal();
    check(added.handlers.size === 0, 'and left when they go');

    global.display.emit('window-created');
    extension.disable();
    check([tracker, global.display, ...windows].every(object => object.handlers.size === 0), 'nothing is left behind');
    [...apps, ...whole, ...part].forEach(object => { object.quits = object.deleted = 0; });
}

async function run() {
    // Only the shell itself has its library.
    const script = extensionIn('43-44').replace('Gio, GLib, Shell} = imports.gi', 'Gio, GLib} = imports.gi');
    await exercise(new Function('Shell', `${script}\nreturn init();`)(Shell));

    globalThis.Shell = Shell;
    const [file] = Gio.File.new_tmp('kestrin-XXXXXX.js');
    GLib.file_set_contents(file.get_path(), extensionIn('45-plus').replace("import Shell from 'gi://Shell';", ''));
    const module = await import(file.get_uri());
    file.delete(null);
    await exercise(new module.default({}));
}

const loop = new GLib.MainLoop(null, false);
let status = 1;
run().then(() => { status = 0; }, error => printerr(error, error.stack)).finally(() => loop.quit());
loop.run();
System.exit(status);
