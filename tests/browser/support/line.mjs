// The network between a page and its camera, which a story can cut and mend.
import { createServer, connect } from 'node:net';

export class Line {
  static async to(camera) {
    const line = new Line(camera);
    await line.mend();
    return line;
  }

  constructor(camera) {
    this.camera = camera;
    this.port = 0;
    this.sockets = new Set();
  }

  get url() {
    return `http://127.0.0.1:${this.port}/`;
  }

  async mend() {
    this.server = createServer((near) => {
      const far = connect(this.camera.port, '127.0.0.1');
      for (const [from, to] of [[near, far], [far, near]]) {
        this.sockets.add(from);
        from.pipe(to);
        from.on('error', () => to.destroy());
        from.on('close', () => {
          this.sockets.delete(from);
          to.destroy();
        });
      }
    });
    await new Promise((done, failed) => {
      this.server.on('error', failed);
      this.server.listen(this.port, '127.0.0.1', done);
    });
    this.port = this.server.address().port;
  }

  async cut() {
    const closed = new Promise((done) => this.server.close(done));
    for (const socket of this.sockets) {
      socket.destroy();
    }
    await closed;
  }
}
