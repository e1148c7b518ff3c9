// The Baron is beaten: quiet, and buttons for everybody.
void main()
{
	void self = getlocalvar("self");
	int i;
	fademusic(1, 0);
	changeopenborvariant("nojoin", 0);
	for(i = 0; i < 6; i++){
		clearspawnentry();
		setspawnentry("name", "Button");
		setspawnentry("coords", getentityproperty(self, "x") - 50 + i * 20, getentityproperty(self, "z") + (i % 3) * 4, 0);
		spawn();
	}
	setglobalvar("baron_beaten", 1);
}
