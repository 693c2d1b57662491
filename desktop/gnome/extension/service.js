// Tells Kestrin which windows there are, and closes them the way the shell's own Quit does. Nobody else is
// answered, and no title is told: a list of what somebody uses would otherwise be open to every program on the
// session bus.

const NAME = '@KESTRIN_WINDOWS_NAME@';
const PATH = '@KESTRIN_WINDOWS_PATH@';
// Of a window: its number for as long as it is there, process, desktop-file id, both parts of its class, the id of
// its sandbox, whether it can be closed, and whether a task bar shows it. What is not known is 0 or empty.
const INTERFACE = `<node><interface name="@KESTRIN_WINDOWS_NAME@1">
  <method name="List"><arg name="windows" type="a(uissssbb)" direction="out"/></method>
  <method name="Quit">
    <arg name="windows" type="au" direction="in"/>
    <arg name="asked" type="u" direction="out"/>
  </method>
  <signal name="Changed"/>
</interface></node>`;
const PROGRAMS = ['@CMAKE_INSTALL_FULL_BINDIR@/kestrin', '@CMAKE_INSTALL_FULL_BINDIR@/kestrinctl'];
// One absolute path a line. Other lines say nothing.
const ALLOWED = 'Kestrin/@KESTRIN_ALLOWED_PROGRAMS@';
const ERROR = 'org.freedesktop.DBus.Error';
const COALESCING_MS = 20;

// Throws where nothing can be read. Whoever sees other files than we do could have any program under any path.
function programOf(process) {
    if (GLib.file_read_link(`/proc/${process}/ns/mnt`) !== GLib.file_read_link('/proc/self/ns/mnt'))
        return '';
    // An update replaced the file while the program was running.
    return GLib.file_read_link(`/proc/${process}/exe`).replace(/ \(deleted\)$/, '');
}

function programsAllowedByUser() {
    const file = Gio.File.new_for_path(GLib.build_filenamev([GLib.get_user_config_dir(), ALLOWED]));
    if (!file.query_exists(null))
        return [];
    const info = file.query_info('standard::type,standard::size', Gio.FileQueryInfoFlags.NONE, null);
    if (info.get_file_type() !== Gio.FileType.REGULAR || info.get_size() > 65536)
        return [];
    const bytes = file.load_contents(null)[1];
    return new TextDecoder().decode(bytes).split('\n').filter(line => line.startsWith('/'));
}

function mayAsk(credentials) {
    if (credentials.UnixUserID !== new Gio.Credentials().get_unix_user())
        return false;
    const program = programOf(credentials.ProcessID);
    return PROGRAMS.includes(program) || programsAllowedByUser().includes(program);
}

class KestrinWindows {
    enable() {
        this._tracker = Shell.WindowTracker.get_default();
        this._heard = new Map();
        this._listen(this._tracker, ['tracked-windows-changed']);
        this._listen(global.display, ['window-created']);
        this._look();
        this._object = Gio.DBusExportedObject.wrapJSObject(INTERFACE, this);
        this._object.export(Gio.DBus.session, PATH);
        this._name = Gio.bus_own_name(Gio.BusType.SESSION, NAME, Gio.BusNameOwnerFlags.NONE, null, null, null);
    }

    // Also called when a session mode begins that is not in metadata.json. The screen's lock is: whatever starts
    // behind it has to be seen too, and nothing here shows anything.
    disable() {
        Gio.bus_unown_name(this._name);
        this._object.unexport();
        this._object = null;
        if (this._timer)
            GLib.source_remove(this._timer);
        this._timer = 0;
        [...this._heard.keys()].forEach(object => this._leave(object));
        this._heard = this._tracker = this._told = null;
    }

    ListAsync(_parameters, invocation) {
        this._answer(invocation, () => new GLib.Variant('(a(uissssbb))', [this._list()]));
    }

    QuitAsync([numbers], invocation) {
        this._answer(invocation, () => new GLib.Variant('(u)', [this._quit(new Set(numbers))]));
    }

    _answer(invocation, makeAnswer) {
        const bus = invocation.get_connection();
        const told = (_bus, result) => {
            try {
                const [credentials] = bus.call_finish(result).recursiveUnpack();
                if (this._object !== null && mayAsk(credentials))
                    invocation.return_value(makeAnswer());
                else
                    invocation.return_dbus_error(`${ERROR}.AccessDenied`, 'Only Kestrin is answered.');
            } catch (error) {
                // Who cannot be looked at is not answered, and nobody is left waiting.
                invocation.return_dbus_error(`${ERROR}.Failed`, `${error}`);
            }
        };
        bus.call('org.freedesktop.DBus', '/org/freedesktop/DBus', 'org.freedesktop.DBus', 'GetConnectionCredentials',
            new GLib.Variant('(s)', [invocation.get_sender()]), new GLib.VariantType('(a{sv})'),
            Gio.DBusCallFlags.NONE, -1, null, told);
    }

    // Menus and the like are no windows to anybody, and one without a size has not been shown yet.
    _windows() {
        return global.get_window_actors()
            .filter(actor => !actor.is_destroyed())
            .map(actor => actor.meta_window)
            .filter(window => !window.is_override_redirect() && window.get_frame_rect().width > 0);
    }

    _list() {
        return this._windows().map(window => {
            const app = this._tracker.get_window_app(window);
            return [
                window.get_stable_sequence(),
                Math.max(window.get_pid(), 0),
                app && !app.is_window_backed() ? app.get_id() : '',
                window.get_wm_class() ?? '',
                window.get_wm_class_instance() ?? '',
                window.get_sandboxed_app_id() ?? '',
                window.can_close(),
                !window.is_skip_taskbar(),
            ];
        });
    }

    // An application of which all windows are to go gets its own Quit. Tells how many windows that is about.
    _quit(numbers) {
        const isMeant = window => numbers.has(window.get_stable_sequence());
        const left = new Set(this._windows().filter(window => isMeant(window) && window.can_close()));
        const count = left.size;
        for (const window of [...left]) {
            const app = this._tracker.get_window_app(window);
            const all = app?.get_windows() ?? [];
            if (left.has(window) && all.includes(window) && all.every(isMeant) && app.request_quit())
                all.forEach(other => left.delete(other));
        }
        left.forEach(window => window.delete(global.get_current_time()));
        return count;
    }

    _listen(object, signals) {
        this._heard.set(object, signals.map(signal => object.connect(signal, () => this._lookSoon())));
    }

    _leave(object) {
        this._heard.get(object).forEach(id => object.disconnect(id));
        this._heard.delete(object);
    }

    // What happens together is told once.
    _lookSoon() {
        this._timer ||= GLib.timeout_add(GLib.PRIORITY_DEFAULT, COALESCING_MS, () => {
            this._timer = 0;
            this._look();
            return GLib.SOURCE_REMOVE;
        });
    }

    // The signal tells only that something has changed: it reaches everybody.
    _look() {
        const all = new Set(global.get_window_actors().map(actor => actor.meta_window));
        for (const window of all) {
            if (!this._heard.has(window))
                this._listen(window, ['notify::wm-class', 'notify::skip-taskbar', 'size-changed', 'unmanaged']);
        }
        [...this._heard.keys()]
            .filter(object => object !== this._tracker && object !== global.display && !all.has(object))
            .forEach(object => this._leave(object));
        const now = JSON.stringify(this._list());
        if (this._told !== now)
            this._object?.emit_signal('Changed', null);
        this._told = now;
    }
}
