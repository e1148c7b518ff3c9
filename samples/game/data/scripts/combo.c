// didhitscript of the heroes: counts blows that follow each other quickly.
// updated.c shows the number.
void main()
{
	int now = openborvariant("elapsed_time");
	int count = getglobalvar("combo");
	if(getlocalvar("blocked") == 1){
		return;
	}
	if(now - getglobalvar("combo_time") > 70){
		count = 0;
	}
	count++;
	setglobalvar("combo", count);
	setglobalvar("combo_time", now);
	if(count == 10){
		playsound("data/sounds/select.wav");
	}
}
